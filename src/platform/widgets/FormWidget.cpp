#include "widgets/FormWidget.h"

#include "appkit/Pixels.h"
#include "widgets/ControlWidget.h"
#include "widgets/FormLook.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// More than this is hard to read across. Points.
constexpr double widest = 700;
constexpr double rowMargin = 12;

/// What groups the rows of a section: a rounded ground, and a line between each two rows.
class GroupBox final : public QWidget {
public:
    using QWidget::QWidget;

private:
    /// Lighter than what is around it: what can be changed is darker again on dark windows.
    QColor ground() const
    {
        const QColor window = palette().color(QPalette::Active, QPalette::Window);
        return window.lightness() < 128 ? window.lighter(128) : palette().color(QPalette::Active, QPalette::Base);
    }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor line = palette().color(QPalette::WindowText);
        line.setAlphaF(0.16F);
        painter.setPen(QPen(line, Pixels::from(1)));
        painter.setBrush(ground());
        const double half = Pixels::from(1) / 2.0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), Pixels::from(8), Pixels::from(8));
        painter.setRenderHint(QPainter::Antialiasing, false);
        for (int index = 1; index < layout()->count(); ++index) {
            const int y = layout()->itemAt(index)->geometry().top();
            painter.fillRect(Pixels::from(rowMargin), y, width() - 2 * Pixels::from(rowMargin), Pixels::from(1), line);
        }
    }
};

QVBoxLayout* column(QWidget* parent)
{
    auto* layout = new QVBoxLayout(parent);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    return layout;
}

}

FormWidget::FormWidget(QWidget* parent)
    : QScrollArea(parent)
{
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto* content = new QWidget;
    auto* across = new QHBoxLayout(content);
    const int margin = Pixels::from(20);
    across->setContentsMargins(margin, Pixels::from(4), margin, margin);
    auto* page = new QWidget(content);
    page->setMaximumWidth(Pixels::from(widest));
    across->addWidget(page);
    layout_ = column(page);
    layout_->addStretch(1);
    setWidget(content);
}

FormWidget::SectionWidget FormWidget::makeSection()
{
    auto* header = new StyledLabel;
    header->setFont(FormLook::font(13, QFont::DemiBold));
    auto* box = new GroupBox;
    auto* footer = new StyledLabel(forms::TextStyle::tertiary);
    footer->setFont(FormLook::font(FormLook::footerSize));
    footer->setWordWrap(true);
    const int side = Pixels::from(rowMargin);
    header->setContentsMargins(side, 0, side, Pixels::from(6));
    footer->setContentsMargins(side, Pixels::from(6), side, 0);
    for (QWidget* part : std::initializer_list<QWidget*> { header, box, footer })
        layout_->insertWidget(layout_->count() - 1, part);
    layout_->insertSpacing(layout_->count() - 1, Pixels::from(18));
    return { header, box, column(box), footer, {} };
}

void FormWidget::show(const forms::Form& form)
{
    while (sections_.size() < form.sections.size())
        sections_.push_back(makeSection());
    for (std::size_t index = 0; index < form.sections.size(); ++index)
        show(sections_[index], form.sections[index]);
}

void FormWidget::show(SectionWidget& section, const forms::Section& content)
{
    section.header->setText(QString::fromStdString(content.header));
    section.header->setVisible(!content.header.empty());
    section.footer->setText(QString::fromStdString(content.footer));
    section.footer->setVisible(!content.footer.empty());

    std::vector<RowWidget> rows;
    for (const forms::Row& row : content.rows) {
        const auto known = std::find_if(
            section.rows.begin(), section.rows.end(), [&](const RowWidget& each) { return each.id == row.id; });
        if (known != section.rows.end() && showIn(*known, row)) {
            rows.push_back(*known);
            section.rows.erase(known);
        } else {
            rows.push_back(makeRow(row, section.box));
        }
        for (ControlWidget* control : rows.back().controls)
            control->setHelp(section.footer->text());
    }
    for (const RowWidget& gone : section.rows)
        delete gone.widget;
    section.rows = std::move(rows);
    for (std::size_t index = 0; index < section.rows.size(); ++index) {
        QWidget* widget = section.rows[index].widget;
        const int place = static_cast<int>(index);
        const QLayoutItem* there = section.rowsLayout->itemAt(place);
        if (!there || there->widget() != widget)
            section.rowsLayout->insertWidget(place, widget);
    }
}

FormWidget::RowWidget FormWidget::makeRow(const forms::Row& row, QWidget* parent) const
{
    RowWidget made { row.id, new QWidget(parent), {} };
    auto* layout = new QHBoxLayout(made.widget);
    const int side = Pixels::from(rowMargin);
    layout->setContentsMargins(side, Pixels::from(7), side, Pixels::from(7));
    layout->setSpacing(Pixels::from(8));
    made.widget->setMinimumHeight(Pixels::from(38));
    bool isFilled = false;
    for (const forms::Control& control : row.controls) {
        made.controls.push_back(ControlWidget::make(control));
        const bool isWide = made.controls.back()->isWide();
        layout->addWidget(made.controls.back(), isWide ? 1 : 0);
        isFilled |= isWide;
    }
    // What leads rows of several parts is of one width, so that what follows is in line.
    if (made.controls.size() > 1 && !made.controls.front()->isWide())
        made.controls.front()->setMinimumWidth(Pixels::from(24));
    if (!isFilled)
        layout->addStretch(1);
    return made;
}

/// False where the row is made of other controls than before.
bool FormWidget::showIn(RowWidget& widget, const forms::Row& row)
{
    if (widget.controls.size() != row.controls.size())
        return false;
    return std::equal(widget.controls.begin(), widget.controls.end(), row.controls.begin(),
        [](ControlWidget* control, const forms::Control& content) { return control->show(content); });
}

std::vector<QWidget*> FormWidget::focusChain() const
{
    std::vector<QWidget*> chain;
    for (const SectionWidget& section : sections_)
        for (const RowWidget& row : section.rows)
            for (ControlWidget* control : row.controls)
                if (control->editor())
                    chain.push_back(control->editor());
    return chain;
}
