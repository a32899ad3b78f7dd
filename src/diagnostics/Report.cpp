#include "diagnostics/Report.h"

#include "foundation/NSFileHandle.h"

#include <array>
#include <charconv>

namespace {

std::string whole(double number)
{
    return std::to_string(static_cast<long long>(number));
}

}

void Report::line(std::string_view prefix, std::string_view text)
{
    NSFileHandle::writeToStandardError(std::string(prefix).append(text).append("\n"));
}

std::string Report::rect(const CGRect& rect)
{
    return std::string("(").append(whole(rect.x)) + ", " + whole(rect.y) + ", " + whole(rect.width) + ", "
        + whole(rect.height) + ")";
}

std::string Report::size(const CGSize& size)
{
    return whole(size.width) + "x" + whole(size.height);
}

std::string Report::number(double value)
{
    std::array<char, 32> text {};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return { text.data(), end };
}

std::string Report::nameOf(const NSRunningApplication& application)
{
    return application.localizedName().value_or("?");
}

std::string Report::nameOf(pid_t pid)
{
    const auto application = NSRunningApplication::runningApplication(pid);
    return application ? nameOf(*application) : "?";
}
