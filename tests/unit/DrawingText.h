#pragma once

#include "appkit/DrawingList.h"

#include <string>
#include <vector>

/// A line of text for each operation of a drawing, so that a test can say what it expects and a failure can be read:
///
///     fill 12,4 38x44 r9 FFFFFF@0.1                      a shape, and a colour with its alpha
///     gradient 0,0 400x52 r0 0000FF@1 000000@1 90        from, to, degrees
///     stroke 62,13 160x26 r6 FFFFFF@0.13 w1
///     icon 18,16 26x26 @0.42                             an icon and how much of it shows
///     symbol trash 11.44 FFFFFF 578,17 14.3x14.3         a symbol in one colour, with its point size and place
///     text 12 9 FFFFFF 37,32.5
std::vector<std::string> described(const DrawingList& drawing);
