#pragma once

namespace freedesktop {

/// Whether the session has a message bus. Without one, asking for it would start one of our own.
bool hasSessionBus();

}
