#include "appkit/AccessibleView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QRect>
#include <QWidget>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

QAccessible::Role toolkitRole(NSAccessibilityRole role)
{
    switch (role) {
    case NSAccessibilityRole::toolbar:
        return QAccessible::ToolBar;
    case NSAccessibilityRole::button:
        return QAccessible::Button;
    case NSAccessibilityRole::list:
        return QAccessible::List;
    case NSAccessibilityRole::row:
        return QAccessible::ListItem;
    default:
        return QAccessible::Client;
    }
}

void tell(QAccessibleInterface& about, QAccessible::Event what)
{
    QAccessibleEvent event(&about, what);
    QAccessible::updateAccessibility(&event);
}

/// An element in the tree, which owns it.
class AccessibleElement final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    /// What of an element is told of when it changes.
    struct Shown {
        NSAccessibilityElement element;
        QRect rect;
        bool isVisible = false;
    };

    AccessibleElement(QAccessibleInterface& view, Shown shown)
        : view_(view)
        , shown_(std::move(shown))
    {
    }

    const std::string& identifier() const { return shown_.element.identifier; }
    /// Gives what it showed before.
    Shown show(Shown shown) { return std::exchange(shown_, std::move(shown)); }

    void tellWhatChanged(const Shown& before)
    {
        const NSAccessibilityElement& now = shown_.element;
        if (before.element.label != now.label)
            tell(*this, QAccessible::NameChanged);
        if (before.element.help != now.help)
            tell(*this, QAccessible::DescriptionChanged);
        if (before.element.isSelected != now.isSelected)
            tellSelection();
        if (before.rect != shown_.rect)
            tell(*this, QAccessible::LocationChanged);
        if (before.isVisible != shown_.isVisible)
            tell(*this, shown_.isVisible ? QAccessible::ObjectShow : QAccessible::ObjectHide);
    }

    bool isValid() const override { return view_.isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view_.window(); }
    QAccessibleInterface* parent() const override { return &view_; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return toolkitRole(shown_.element.role); }
    QRect rect() const override { return shown_.rect.translated(view_.rect().topLeft()); }
    void setText(QAccessible::Text, const QString&) override { }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return QString::fromStdString(shown_.element.label);
        if (kind == QAccessible::Description)
            return QString::fromStdString(shown_.element.help);
        return {};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !shown_.isVisible;
        state.pressed = isButton() && shown_.element.isSelected;
        state.selectable = !isButton();
        state.selected = !isButton() && shown_.element.isSelected;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return { pressAction() }; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    /// What is done may be the end of the element.
    void doAction(const QString& name) override
    {
        auto* source = dynamic_cast<AccessibleSource*>(view_.object());
        const auto press = shown_.element.press;
        if (name == pressAction() && source && press)
            source->carryOut(press);
    }

private:
    bool isButton() const { return shown_.element.role == NSAccessibilityRole::button; }

    void tellSelection()
    {
        if (!isButton())
            return tell(*this, shown_.element.isSelected ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
        QAccessible::State changed;
        changed.pressed = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }

    QAccessibleInterface& view_;
    Shown shown_;
};

/// A source in the tree: its elements come before the widgets in it.
class AccessibleSourceWidget final : public QAccessibleWidget {
public:
    explicit AccessibleSourceWidget(QWidget& widget)
        : QAccessibleWidget(&widget)
    {
        for (Shown& shown : read())
            children_.push_back(add(std::move(shown)));
    }

    /// The tree may have dropped them already.
    ~AccessibleSourceWidget() override { std::ranges::for_each(children_, QAccessible::deleteAccessibleInterface); }

    /// Takes over what the source shows now, and tells of what is new in it.
    void update()
    {
        std::vector<Shown> shown = read();
        std::vector<QAccessible::Id> left = children_;
        std::vector<QAccessible::Id> kept;
        for (const Shown& each : shown) {
            const auto same = std::ranges::find_if(
                left, [&](QAccessible::Id id) { return id && element(id).identifier() == each.element.identifier; });
            kept.push_back(same == left.end() ? 0 : std::exchange(*same, 0));
        }
        std::erase(left, 0);
        std::ranges::for_each(left, [this](QAccessible::Id id) { remove(id); });
        show(std::move(kept), std::move(shown));
    }

    QAccessible::Role role() const override
    {
        return toolkitRole(source() ? source()->accessibilityRole() : NSAccessibilityRole::group);
    }

    int childCount() const override { return count() + QAccessibleWidget::childCount(); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= count())
            return QAccessibleWidget::child(index - count());
        return &element(children_[static_cast<std::size_t>(index)]);
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto own = std::ranges::find_if(children_, [&](QAccessible::Id id) { return &element(id) == child; });
        if (own != children_.end())
            return static_cast<int>(own - children_.begin());
        const int index = QAccessibleWidget::indexOfChild(child);
        return index < 0 ? index : index + count();
    }

    /// A widget lies over what is drawn on the one that it is in.
    QAccessibleInterface* childAt(int x, int y) const override
    {
        if (QAccessibleInterface* inFront = QAccessibleWidget::childAt(x, y))
            return inFront;
        const auto found
            = std::ranges::find_if(children_, [&](QAccessible::Id id) { return element(id).rect().contains(x, y); });
        return found == children_.end() ? nullptr : &element(*found);
    }

private:
    using Shown = AccessibleElement::Shown;

    static AccessibleElement& element(QAccessible::Id id)
    {
        return static_cast<AccessibleElement&>(*QAccessible::accessibleInterface(id));
    }

    AccessibleSource* source() const { return dynamic_cast<AccessibleSource*>(object()); }
    int count() const { return static_cast<int>(std::ssize(children_)); }

    std::vector<Shown> read() const
    {
        std::vector<Shown> shown;
        if (!source())
            return shown;
        for (NSAccessibilityElement& element : source()->accessibilityChildren()) {
            const QRect rect = source()->pixels(element.frame);
            shown.push_back({ std::move(element), rect, widget()->isVisible() });
        }
        return shown;
    }

    QAccessible::Id add(Shown shown)
    {
        return QAccessible::registerAccessibleInterface(new AccessibleElement(*this, std::move(shown)));
    }

    /// Told while it is still in its place.
    void remove(QAccessible::Id id)
    {
        tell(element(id), QAccessible::ObjectDestroyed);
        std::erase(children_, id);
        QAccessible::deleteAccessibleInterface(id);
    }

    /// `kept` has no number for what is new. Each change is told when all of them are made.
    void show(std::vector<QAccessible::Id> kept, std::vector<Shown> shown)
    {
        children_ = kept;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            if (kept[i])
                shown[i] = element(kept[i]).show(std::move(shown[i]));
            else
                children_[i] = add(std::move(shown[i]));
        }
        for (std::size_t i = 0; i < shown.size(); ++i) {
            if (kept[i])
                element(kept[i]).tellWhatChanged(shown[i]);
            else
                tell(element(children_[i]), QAccessible::ObjectCreated);
        }
    }

    /// In the source's order.
    std::vector<QAccessible::Id> children_;
};

/// The layer's widgets: sources, and the windows that they lie in.
QAccessibleInterface* make(const QString& kind, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    if (dynamic_cast<AccessibleSource*>(object))
        return new AccessibleSourceWidget(*widget);
    if (widget && widget->isWindow() && kind == QLatin1String("QWidget"))
        return new QAccessibleWidget(widget, QAccessible::Window);
    return nullptr;
}

}

void AccessibleView::start()
{
    QAccessible::installFactory(make);
}

void AccessibleView::update(QWidget& source)
{
    if (!QAccessible::isActive())
        return;
    if (auto* accessible = dynamic_cast<AccessibleSourceWidget*>(QAccessible::queryAccessibleInterface(&source)))
        accessible->update();
}
