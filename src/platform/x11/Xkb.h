#pragma once

#include <xcb/xcb.h>

// The library's header names members with a word that C++ keeps for itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
