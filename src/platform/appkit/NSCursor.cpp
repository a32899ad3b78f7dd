#include "appkit/NSCursor.h"

#include <QPointer>
#include <QWidget>

#include <cstddef>

namespace {

constexpr Qt::CursorShape toolkitShapes[] { Qt::ArrowCursor, Qt::IBeamCursor, Qt::PointingHandCursor };

/// The view's widget that the pointer is in.
QPointer<QWidget>& pointed()
{
    static QPointer<QWidget> widget;
    return widget;
}

NSCursor& current()
{
    static NSCursor cursor = NSCursor::arrow();
    return cursor;
}

}

NSCursor NSCursor::currentCursor()
{
    return current();
}

void NSCursor::set() const
{
    current() = *this;
    show();
}

/// The toolkit keeps a shape for each widget; asking for the one that shows would still cost a request.
void NSCursor::show() const
{
    const Qt::CursorShape shape = toolkitShapes[static_cast<std::size_t>(shape_)];
    if (pointed() && pointed()->cursor().shape() != shape)
        pointed()->setCursor(shape);
}

void NSCursor::entered(QWidget& widget)
{
    pointed() = &widget;
    current().show();
}

void NSCursor::left(const QWidget& widget)
{
    if (pointed() == &widget)
        pointed() = nullptr;
}
