#pragma once

#include <string_view>

/// What the library of property lists can't be trusted with, found in the bytes of a binary file: eight of them,
/// "bplist00"; its objects, each a byte that has its kind in the upper four bits; and in the last 32 bytes, where they
/// are. All numbers are big-endian. Any bytes will do. Any thread.
namespace BinaryPropertyList {

/// Whether one of the texts has a zero in it, or they lie over one another.
bool hasTextWithZero(std::string_view bytes);

/// False when the first object is a date beyond the years 1 to 9999, which can't be written as text.
bool isWithinCalendar(std::string_view bytes);

}
