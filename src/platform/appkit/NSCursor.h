#pragma once

class QWidget;

/// A shape of the pointer. It shows over the program's own windows, as other programs' have theirs; a view's cursor
/// rectangles choose among shapes by themselves. Main thread.
class NSCursor {
public:
    static NSCursor arrow() { return NSCursor(Shape::arrow); }
    static NSCursor iBeam() { return NSCursor(Shape::iBeam); }
    static NSCursor pointingHand() { return NSCursor(Shape::pointingHand); }
    /// The one that was set last.
    static NSCursor currentCursor();

    void set() const;

    bool operator==(const NSCursor&) const = default;

    // For the layer's own use: the view's widget that the pointer came into or left.
    static void entered(QWidget& widget);
    static void left(const QWidget& widget);

private:
    enum class Shape { arrow, iBeam, pointingHand };

    explicit NSCursor(Shape shape)
        : shape_(shape)
    {
    }
    void show() const;

    Shape shape_;
};
