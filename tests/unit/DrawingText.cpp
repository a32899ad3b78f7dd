#include "unit/DrawingText.h"

#include "look/HexColor.h"

#include <sstream>

namespace {

template <class... Parts>
std::string joined(const Parts&... parts)
{
    std::ostringstream out;
    (out << ... << parts);
    return out.str();
}

std::string text(const NSColor& color)
{
    return joined(HexColor::hexString(color), '@', color.alphaComponent());
}

std::string text(const CGRect& rect)
{
    return joined(rect.x, ',', rect.y, ' ', rect.width, 'x', rect.height);
}

std::string text(const NSBezierPath& path)
{
    return joined(text(path.bounds()), " r", path.xRadius());
}

/// A symbol that one colour was poured over.
std::string tinted(const NSImage::Drawing& drawing)
{
    const auto& operations = drawing.list->operations;
    const auto* image = operations.size() == 2 ? std::get_if<Drawing::Image>(&operations[0]) : nullptr;
    const auto* color = operations.size() == 2 ? std::get_if<Drawing::Fill>(&operations[1]) : nullptr;
    const CGRect whole { 0, 0, drawing.size.width, drawing.size.height };
    const bool isTint = image && color && image->image.symbol() && image->rect == whole
        && color->path == NSBezierPath::rect(whole) && color->operation == NSCompositingOperation::sourceAtop;
    if (!isTint)
        return "another drawing";
    const NSImage::Symbol& symbol = *image->image.symbol();
    return joined("symbol ", symbol.name, ' ', symbol.configuration.pointSize, ' ', text(color->color));
}

struct Describe {
    std::string operator()(const Drawing::Fill& fill) const
    {
        return joined("fill ", text(fill.path), ' ', text(fill.color));
    }
    std::string operator()(const Drawing::Stroke& stroke) const
    {
        return joined("stroke ", text(stroke.path), ' ', text(stroke.color), " w", stroke.path.lineWidth());
    }
    std::string operator()(const Drawing::Gradient& gradient) const
    {
        return joined(
            "gradient ", text(gradient.path), ' ', text(gradient.start), ' ', text(gradient.end), ' ', gradient.angle);
    }
    std::string operator()(const Drawing::Image& image) const
    {
        if (const auto& drawing = image.image.drawing())
            return joined(tinted(*drawing), ' ', text(image.rect));
        return joined(image.image.icon() ? "icon " : "empty image ", text(image.rect), " @", image.fraction);
    }
    std::string operator()(const Drawing::Text& drawn) const
    {
        return joined("text ", drawn.text, ' ', drawn.font.pointSize(), ' ', HexColor::hexString(drawn.color), ' ',
            drawn.point.x, ',', drawn.point.y);
    }
    std::string operator()(const Drawing::Shadow& drawn) const
    {
        const NSShadow& shadow = drawn.shadow;
        return joined("shadow ", text(shadow.color), " blur ", shadow.blurRadius, " offset ", shadow.offset.width, ',',
            shadow.offset.height);
    }
    std::string operator()(const Drawing::Save&) const { return "save"; }
    std::string operator()(const Drawing::Restore&) const { return "restore"; }
    std::string operator()(const Drawing::Clip& clip) const { return "clip " + text(clip.path); }
};

}

std::vector<std::string> described(const DrawingList& drawing)
{
    std::vector<std::string> lines;
    for (const Drawing::Operation& operation : drawing.operations)
        lines.push_back(std::visit(Describe(), operation));
    return lines;
}
