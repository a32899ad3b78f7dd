#include "diagnostics/Report.h"

#include "foundation/NSFileHandle.h"

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

std::string Report::size(const CGRect& rect)
{
    return whole(rect.width) + "x" + whole(rect.height);
}
