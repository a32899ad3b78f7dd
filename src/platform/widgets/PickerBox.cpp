#include "widgets/PickerBox.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QWheelEvent>

namespace {

/// What a screen reader has of a picker. The toolkit's own names it by what is chosen in it.
class AccessiblePicker final : public QAccessibleWidget {
public:
    explicit AccessiblePicker(QComboBox* box)
        : QAccessibleWidget(box, QAccessible::ComboBox)
        , box_(*box)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? box_.currentText() : QAccessibleWidget::text(kind);
    }
    /// The list of what can be chosen, in which the choice is selected.
    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override
    {
        if (index != 0)
            return nullptr;
        QAbstractItemView& list = *box_.view();
        if (!list.isVisible())
            list.setCurrentIndex(box_.model()->index(box_.currentIndex(), 0));
        return QAccessible::queryAccessibleInterface(&list);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child->object() == box_.view() ? 0 : -1;
    }
    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << showMenuAction(); }
    void doAction(const QString& name) override
    {
        if (name == showMenuAction())
            box_.showPopup();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QComboBox& box_;
};

QAccessibleInterface* accessible(const QString&, QObject* object)
{
    auto* box = dynamic_cast<PickerBox*>(object);
    return box ? new AccessiblePicker(box) : nullptr;
}

}

PickerBox::PickerBox(QWidget* parent)
    : QComboBox(parent)
{
    // Once: a factory that is there already isn't put in again.
    QAccessible::installFactory(accessible);
    setFocusPolicy(Qt::StrongFocus);
}

void PickerBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}
