#include "widgets/SidebarWidget.h"

#include "appkit/Pixels.h"
#include "base/RunLoop.h"
#include "widgets/FormLook.h"

#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace {

enum Role { id = Qt::UserRole, symbol, summary };

// Points.
constexpr double symbolWidth = 18;
constexpr double symbolGap = 9;
constexpr double lineGap = 1;
constexpr double margin = 2;
constexpr double inset = 8;
constexpr double padding = 5;

bool isHeader(const QModelIndex& index)
{
    return index.data(id).toString().isEmpty();
}

class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

private:
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override
    {
        if (isHeader(index))
            return { 0, QFontMetrics(headerFont()).height() + Pixels::from(index.row() == 0 ? 12 : 20) };
        const int text
            = QFontMetrics(titleFont()).height() + QFontMetrics(summaryFont()).height() + Pixels::from(lineGap);
        return { 0, text + 2 * Pixels::from(margin + padding) };
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isHeader(index))
            paintHeader(*painter, option, index);
        else
            paintRow(*painter, option, index);
        painter->restore();
    }

    static void paintHeader(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index)
    {
        painter.setFont(headerFont());
        painter.setPen(FormLook::color(option.palette, forms::TextStyle::tertiary));
        const int side = Pixels::from(inset + padding);
        painter.drawText(option.rect.adjusted(side, 0, -side, -Pixels::from(4)), Qt::AlignLeft | Qt::AlignBottom,
            index.data().toString());
    }

    static void paintRow(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index)
    {
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QRect row = option.rect.adjusted(
            Pixels::from(inset), Pixels::from(margin), -Pixels::from(inset), -Pixels::from(margin));
        QColor textColor = option.palette.color(QPalette::WindowText);
        QColor summaryColor = FormLook::color(option.palette, forms::TextStyle::tertiary);
        if (isSelected) {
            textColor = option.palette.color(QPalette::HighlightedText);
            summaryColor = textColor;
            summaryColor.setAlphaF(0.8F);
            painter.setPen(Qt::NoPen);
            painter.setBrush(option.palette.color(QPalette::Highlight));
            painter.drawRoundedRect(row, Pixels::from(6), Pixels::from(6));
        }
        if (option.state.testFlag(QStyle::State_HasFocus) && isSelected) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(summaryColor, Pixels::from(1)));
            painter.drawRoundedRect(QRectF(row).adjusted(1.5, 1.5, -1.5, -1.5), Pixels::from(5), Pixels::from(5));
        }

        const int side = Pixels::from(symbolWidth);
        const QRect picture(row.left() + Pixels::from(padding), row.center().y() - side / 2, side, side);
        painter.drawPixmap(
            picture.topLeft(), FormLook::symbol(index.data(symbol).toString().toStdString(), side, textColor));

        const int left = picture.right() + 1 + Pixels::from(symbolGap);
        const int width = row.right() - Pixels::from(padding) - left;
        const QFontMetrics title(titleFont());
        const QFontMetrics line(summaryFont());
        int y = row.center().y() - (title.height() + line.height() + Pixels::from(lineGap)) / 2;
        const auto drawLine
            = [&](const QFont& font, const QFontMetrics& metrics, const QColor& color, const QString& words) {
                  painter.setFont(font);
                  painter.setPen(color);
                  painter.drawText(left, y + metrics.ascent(), metrics.elidedText(words, Qt::ElideRight, width));
                  y += metrics.height() + Pixels::from(lineGap);
              };
        drawLine(titleFont(), title, textColor, index.data().toString());
        drawLine(summaryFont(), line, summaryColor, index.data(summary).toString());
    }

    static QFont titleFont() { return FormLook::font(13); }
    static QFont summaryFont() { return FormLook::font(10.5); }
    static QFont headerFont() { return FormLook::font(11, QFont::DemiBold); }
};

void set(QListWidgetItem& item, int role, const QString& value)
{
    if (item.data(role).toString() != value)
        item.setData(role, value);
}

}

SidebarWidget::SidebarWidget(QWidget* parent)
    : QListWidget(parent)
{
    setItemDelegate(new RowDelegate(this));
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(QStringLiteral("Settings"));
    // Its ground is that of the window, a shade away from what it stands beside.
    setBackgroundRole(QPalette::AlternateBase);
    viewport()->setBackgroundRole(QPalette::AlternateBase);
    connect(this, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (!item || !onSelect)
            return;
        const RunLoop::Turn turn;
        onSelect(item->data(id).toString().toStdString());
    });
}

void SidebarWidget::show(const std::vector<forms::SidebarSection>& sections, const std::string& selection)
{
    const QSignalBlocker silently(this);
    int row = 0;
    const auto next = [&] {
        if (row == count())
            addItem(new QListWidgetItem);
        return item(row++);
    };
    for (const forms::SidebarSection& section : sections) {
        QListWidgetItem* header = next();
        set(*header, Qt::DisplayRole, QString::fromStdString(section.header));
        header->setFlags(Qt::NoItemFlags);
        for (const forms::SidebarRow& content : section.rows) {
            QListWidgetItem* entry = next();
            set(*entry, Qt::DisplayRole, QString::fromStdString(content.title));
            set(*entry, id, QString::fromStdString(content.id));
            set(*entry, symbol, QString::fromStdString(content.symbol));
            set(*entry, summary, QString::fromStdString(content.summary));
            set(*entry, Qt::AccessibleDescriptionRole, QString::fromStdString(content.summary));
            if (content.id == selection && currentItem() != entry)
                setCurrentItem(entry);
        }
    }
}
