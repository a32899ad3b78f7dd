#pragma once

#include <QComboBox>

/// A box of choices that the wheel scrolls by, as anything else in a form, and that a screen reader knows by its label.
/// Main thread.
class PickerBox final : public QComboBox {
public:
    explicit PickerBox(QWidget* parent);

private:
    void wheelEvent(QWheelEvent* event) override;
};
