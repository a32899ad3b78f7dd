#pragma once

#include "x11/Connection.h"
#include "x11/Geometry.h"

#include <xcb/render.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace x11 {

/// Pixels, 32-bit ARGB, premultiplied, row by row from the top; or why there are none.
struct PixelsResult {
    std::vector<std::uint32_t> argb;
    int width = 0;
    int height = 0;
    std::string error;
};

/// Scales pictures down in the server, which keeps them where it draws and has only the small one to send. Any depth
/// and visual that it can render from. The capture's thread.
class PictureScaler {
public:
    explicit PictureScaler(Connection& connection);

    /// The part of a drawable of that visual, scaled to `width` by `height` pixels.
    PixelsResult scaled(xcb_drawable_t drawable, xcb_visualid_t visual, const Rect& part, int width, int height);

private:
    class Picture;
    class Canvas;

    PixelsResult fetch(xcb_pixmap_t pixmap, int width, int height);

    Connection& connection_;
    std::unordered_map<xcb_visualid_t, xcb_render_pictformat_t> formats_;
    xcb_render_pictformat_t argb_ = 0;
};

}
