#include "x11/PictureScaler.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <string_view>

namespace x11 {
namespace {

/// Beyond this the picture would be larger on its way than most screens; the first step then leaves pixels out.
constexpr int mostHalvings = 3;

xcb_render_fixed_t fixed(double value)
{
    return static_cast<xcb_render_fixed_t>(value * 65536.0);
}

bool isArgb32(const xcb_render_pictforminfo_t& format)
{
    const auto& direct = format.direct;
    return format.type == XCB_RENDER_PICT_TYPE_DIRECT && format.depth == 32 && direct.alpha_shift == 24
        && direct.alpha_mask == 0xFF && direct.red_shift == 16 && direct.green_shift == 8 && direct.blue_shift == 0;
}

/// How often a picture is halved after a first step that makes it at most two times smaller.
int halvings(const Rect& part, int width, int height)
{
    const double factor = std::max(static_cast<double>(part.width) / width, static_cast<double>(part.height) / height);
    int count = 0;
    while (count < mostHalvings && factor > (2 << count))
        ++count;
    return count;
}

}

/// A drawable as something to render from or to.
class PictureScaler::Picture {
public:
    Picture(Connection& connection, xcb_drawable_t drawable, xcb_render_pictformat_t format)
        : connection_(connection)
        , id_(xcb_generate_id(connection))
    {
        // At its edges a picture is mixed with its like rather than with nothing.
        const std::uint32_t repeat = XCB_RENDER_REPEAT_PAD;
        xcb_render_create_picture(connection, id_, drawable, format, XCB_RENDER_CP_REPEAT, &repeat);
    }
    ~Picture() { xcb_render_free_picture(connection_, id_); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    operator xcb_render_picture_t() const { return id_; }

    /// Draws `part` of this one over the whole of another. Where a pixel takes the place of two by two it is their
    /// mean.
    void drawScaled(const Rect& part, xcb_render_picture_t onto, int width, int height) const
    {
        const double across = static_cast<double>(part.width) / width;
        const double down = static_cast<double>(part.height) / height;
        const xcb_render_transform_t transform { fixed(across), 0, fixed(part.x), 0, fixed(down), fixed(part.y), 0, 0,
            fixed(1) };
        constexpr std::string_view filter = "bilinear";
        xcb_render_set_picture_transform(connection_, id_, transform);
        xcb_render_set_picture_filter(connection_, id_, filter.size(), filter.data(), 0, nullptr);
        xcb_render_composite(connection_, XCB_RENDER_PICT_OP_SRC, id_, XCB_RENDER_PICTURE_NONE, onto, 0, 0, 0, 0, 0, 0,
            static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
    }

private:
    Connection& connection_;
    xcb_render_picture_t id_;
};

/// A pixmap of our own with its picture.
class PictureScaler::Canvas {
public:
    Canvas(Connection& connection, int width, int height, xcb_render_pictformat_t format)
        : pixmap_(connection, width, height)
        , picture_(connection, pixmap_.id, format)
    {
    }

    xcb_pixmap_t pixmap() const { return pixmap_.id; }
    const Picture& picture() const { return picture_; }

private:
    struct Pixmap {
        Pixmap(Connection& of, int width, int height)
            : connection(of)
            , id(xcb_generate_id(of))
        {
            xcb_create_pixmap(
                of, 32, id, of.root(), static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
        }
        ~Pixmap() { xcb_free_pixmap(connection, id); }
        Pixmap(const Pixmap&) = delete;
        Pixmap& operator=(const Pixmap&) = delete;

        Connection& connection;
        xcb_pixmap_t id;
    };

    Pixmap pixmap_;
    Picture picture_;
};

PictureScaler::PictureScaler(Connection& connection)
    : connection_(connection)
{
    if (!connection.extension(xcb_render_id))
        return;
    const Reply<xcb_render_query_pict_formats_reply_t> reply(
        xcb_render_query_pict_formats_reply(connection, xcb_render_query_pict_formats(connection), nullptr));
    if (!reply)
        return;
    for (auto each = xcb_render_query_pict_formats_formats_iterator(reply.get()); each.rem > 0;
         xcb_render_pictforminfo_next(&each)) {
        if (isArgb32(*each.data))
            argb_ = each.data->id;
    }
    for (auto screen = xcb_render_query_pict_formats_screens_iterator(reply.get()); screen.rem > 0;
         xcb_render_pictscreen_next(&screen)) {
        for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem > 0;
             xcb_render_pictdepth_next(&depth)) {
            const auto* visuals = xcb_render_pictdepth_visuals(depth.data);
            for (int index = 0; index < xcb_render_pictdepth_visuals_length(depth.data); ++index)
                formats_.emplace(visuals[index].visual, visuals[index].format);
        }
    }
}

PixelsResult PictureScaler::scaled(
    xcb_drawable_t drawable, xcb_visualid_t visual, const Rect& part, int width, int height)
{
    const auto format = formats_.find(visual);
    if (format == formats_.end() || argb_ == 0)
        return { .argb = {}, .error = "the X server can't render from it" };

    int steps = halvings(part, width, height);
    auto canvas = std::make_unique<Canvas>(connection_, width << steps, height << steps, argb_);
    Picture(connection_, drawable, format->second).drawScaled(part, canvas->picture(), width << steps, height << steps);
    while (steps-- > 0) {
        auto half = std::make_unique<Canvas>(connection_, width << steps, height << steps, argb_);
        canvas->picture().drawScaled(
            { 0, 0, width << (steps + 1), height << (steps + 1) }, half->picture(), width << steps, height << steps);
        canvas = std::move(half);
    }
    return fetch(canvas->pixmap(), width, height);
}

PixelsResult PictureScaler::fetch(xcb_pixmap_t pixmap, int width, int height)
{
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0, static_cast<std::uint16_t>(width),
            static_cast<std::uint16_t>(height), ~0U),
        nullptr));
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < 4 * count)
        return { .argb = {}, .error = "the X server gave no pixels" };

    PixelsResult result { .argb = std::vector<std::uint32_t>(count), .width = width, .height = height, .error = {} };
    std::memcpy(result.argb.data(), xcb_get_image_data(reply.get()), 4 * count);
    constexpr auto native
        = std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
    if (connection_.setup().image_byte_order != native)
        std::ranges::transform(
            result.argb, result.argb.begin(), [](std::uint32_t pixel) { return __builtin_bswap32(pixel); });
    return result;
}

}
