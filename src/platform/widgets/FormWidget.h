#pragma once

#include "forms/Form.h"

#include <QScrollArea>

#include <vector>

class ControlWidget;
class QVBoxLayout;
class StyledLabel;

/// Shows a form, and of the next one what differs: rows that stay keep their widgets, with the keyboard, a slider under
/// the pointer and all, wherever they go. Main thread.
class FormWidget final : public QScrollArea {
public:
    explicit FormWidget(QWidget* parent = nullptr);

    void show(const forms::Form& form);
    /// What can have the keyboard, from top to bottom.
    std::vector<QWidget*> focusChain() const;

private:
    struct RowWidget {
        std::string id;
        QWidget* widget;
        std::vector<ControlWidget*> controls;
    };
    struct SectionWidget {
        StyledLabel* header;
        QWidget* box;
        QVBoxLayout* rowsLayout;
        StyledLabel* footer;
        std::vector<RowWidget> rows;
    };

    SectionWidget makeSection();
    void show(SectionWidget& section, const forms::Section& content);
    RowWidget makeRow(const forms::Row& row, QWidget* parent) const;
    static bool showIn(RowWidget& widget, const forms::Row& row);

    QVBoxLayout* layout_;
    std::vector<SectionWidget> sections_;
};
