#pragma once

#include <functional>

/// Whether pictures of windows can be had: asks for one of every counted window. Main thread.
namespace CaptureProbe {

/// Returns at once; `completion` is called when all is reported.
void run(std::function<void()> completion);

}
