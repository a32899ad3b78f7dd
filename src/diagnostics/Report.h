#pragma once

#include "appkit/NSRunningApplication.h"
#include "base/CGGeometry.h"

#include <cstdint>
#include <string>
#include <string_view>

/// What the diagnostic runs write: lines on standard error, and the forms that values take in them.
namespace Report {

/// The prefix, the text and a line feed. Any thread.
void line(std::string_view prefix, std::string_view text);

inline std::string flag(bool value)
{
    return value ? "true" : "false";
}
/// "(x, y, width, height)" in whole points.
std::string rect(const CGRect& rect);
/// "WIDTHxHEIGHT" in whole points.
std::string size(const CGSize& size);
inline std::string size(const CGRect& rect)
{
    return size(rect.size());
}
/// A number without needless decimals.
std::string number(double value);
/// The application's name; "?" where it has none or has gone. Main thread.
std::string nameOf(pid_t pid);
std::string nameOf(const NSRunningApplication& application);

}
