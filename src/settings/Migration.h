#pragma once

namespace Settings {

/// Takes over the settings and support folders of the program under its former names, once. Call at launch, before any
/// setting is read. Main thread.
void migrateLegacyState();

}
