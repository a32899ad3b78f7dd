#include "embedded/Notices.h"

#include "base/RunLoop.h"

namespace embedded {

void Notices::process(host::ProcessEvent event, Record process)
{
    processes_.emplace_back(event, std::move(process));
    tellLater();
}

void Notices::windowsChanged()
{
    windows_ = true;
    tellLater();
}

void Notices::displaysChanged()
{
    displays_ = true;
    tellLater();
}

void Notices::forget()
{
    processes_.clear();
    windows_ = false;
    displays_ = false;
}

void Notices::sceneChanged() const
{
    RunLoop::main().hurry();
    if (onScene)
        onScene();
}

void Notices::tellLater()
{
    RunLoop::main().hurry();
    if (std::exchange(pending_, true))
        return;
    later_.atNextTurn([this] { tell(); });
}

void Notices::tell()
{
    pending_ = false;
    const auto processes = std::exchange(processes_, {});
    const bool windows = std::exchange(windows_, false);
    const bool displays = std::exchange(displays_, false);

    for (const auto& [event, record] : processes) {
        if (onProcess)
            onProcess(event, record);
    }
    if (windows && onWindows)
        onWindows();
    if (displays && onDisplays)
        onDisplays();
}

}
