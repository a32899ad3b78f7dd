#include "unit/DrawingText.h"

#include "bar/HexColor.h"

#include <sstream>

namespace {

std::string text(const NSColor& color)
{
    std::ostringstream out;
    out << HexColor::hexString(color) << '@' << color.alphaComponent();
    return out.str();
}

std::string text(const CGRect& rect)
{
    std::ostringstream out;
    out << rect.x << ',' << rect.y << ' ' << rect.width << 'x' << rect.height;
    return out.str();
}

std::string text(const NSBezierPath& path)
{
    std::ostringstream out;
    out << text(path.bounds()) << " r" << path.xRadius();
    if (path.yRadius() != path.xRadius())
        out << '/' << path.yRadius();
    return out.str();
}

struct Describe {
    std::string operator()(const Drawing::Fill& fill) const
    {
        const bool isOver = fill.operation == NSCompositingOperation::sourceOver;
        return (isOver ? "fill " : "fill atop ") + text(fill.path) + ' ' + text(fill.color);
    }

    std::string operator()(const Drawing::Stroke& stroke) const
    {
        std::ostringstream out;
        out << "stroke " << text(stroke.path) << ' ' << text(stroke.color) << " w" << stroke.path.lineWidth();
        return out.str();
    }

    std::string operator()(const Drawing::Gradient& gradient) const
    {
        std::ostringstream out;
        out << "gradient " << text(gradient.path) << ' ' << text(gradient.start) << ' ' << text(gradient.end) << ' '
            << gradient.angle;
        return out.str();
    }

    std::string operator()(const Drawing::Image& image) const
    {
        std::ostringstream out;
        if (const auto& drawing = image.image.drawing())
            out << tinted(*drawing) << ' ' << text(image.rect);
        else
            out << (image.image.icon() ? "icon " : "empty image ") << text(image.rect) << " @" << image.fraction;
        return out.str();
    }

    std::string operator()(const Drawing::Text& drawn) const
    {
        std::ostringstream out;
        out << "text " << drawn.text << ' ' << drawn.font.pointSize() << ' ' << HexColor::hexString(drawn.color) << ' '
            << drawn.point.x << ',' << drawn.point.y;
        return out.str();
    }

    std::string operator()(const Drawing::Shadow& shadow) const
    {
        std::ostringstream out;
        out << "shadow " << text(shadow.shadow.color) << " blur " << shadow.shadow.blurRadius << " offset "
            << shadow.shadow.offset.width << ',' << shadow.shadow.offset.height;
        return out.str();
    }

    std::string operator()(const Drawing::Save&) const { return "save"; }
    std::string operator()(const Drawing::Restore&) const { return "restore"; }
    std::string operator()(const Drawing::Clip& clip) const { return "clip " + text(clip.path); }

private:
    /// A symbol that one colour was poured over; anything else is told as a whole.
    static std::string tinted(const NSImage::Drawing& drawing)
    {
        const auto& operations = drawing.list->operations;
        const auto* image = operations.size() == 2 ? std::get_if<Drawing::Image>(&operations[0]) : nullptr;
        const auto* color = operations.size() == 2 ? std::get_if<Drawing::Fill>(&operations[1]) : nullptr;
        const CGRect whole { 0, 0, drawing.size.width, drawing.size.height };
        const bool isTint = image && color && image->image.symbol() && image->rect == whole
            && color->path == NSBezierPath::rect(whole) && color->operation == NSCompositingOperation::sourceAtop;
        if (!isTint) {
            std::string all = "drawing of";
            for (const std::string& line : described(*drawing.list))
                all += " [" + line + ']';
            return all;
        }
        const NSImage::Symbol& symbol = *image->image.symbol();
        std::ostringstream out;
        out << "symbol " << symbol.name << ' ' << symbol.configuration.pointSize << ' ' << text(color->color);
        return out.str();
    }
};

}

std::vector<std::string> described(const DrawingList& drawing)
{
    std::vector<std::string> lines;
    for (const Drawing::Operation& operation : drawing.operations)
        lines.push_back(std::visit(Describe(), operation));
    return lines;
}
