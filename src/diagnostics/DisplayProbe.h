#pragma once

/// A diagnostic run: what the system says of its displays, their spaces and which display each window is on.
namespace DisplayProbe {

void run();

}
