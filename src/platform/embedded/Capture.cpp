#include "embedded/Capture.h"

#include "base/IconSource.h"
#include "embedded/DisplayPainter.h"
#include "embedded/FaultBox.h"

#include <QImage>

namespace embedded {

void Capture::capture(std::uint32_t window, int width, int height, std::function<void(host::Captured)> done)
{
    const Window* known = world_.window(window);
    log_.add({ .pid = known ? known->owner : 0, .window = window, .name = "capture", .value = {} });
    later_.after(world_.faults().captureDelay,
        [this, window, width, height, done = std::move(done)] { done(take(window, width, height)); });
}

host::Captured Capture::take(std::uint32_t number, int width, int height)
{
    if (!isPermitted())
        return { nullptr, "the user doesn't permit it" };
    const Window* window = world_.window(number);
    if (!window || window->bounds.width <= 0 || window->bounds.height <= 0 || world_.screens().all().empty())
        return { nullptr, "there is no such window" };
    if (takeFailure(world_.windowFaults(number).fails, "capture"))
        return { nullptr, "the capture failed" };
    const QImage picture = DisplayPainter(world_, 0).picture(*window, { width, height });
    auto packed = IconSource::pack(reinterpret_cast<const std::uint32_t*>(picture.constBits()), width, height);
    return { std::move(packed), {} };
}

}
