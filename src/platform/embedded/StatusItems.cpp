#include "embedded/StatusItems.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace embedded {
namespace {

constexpr double width = 30;
constexpr int side = 17;
/// What the spaces' marks take of the bar's end: a margin, and so much each.
constexpr double margin = 24;
constexpr double mark = 16;

const QColor textColor(0x23, 0x26, 0x2D);

QImage tinted(QImage shape, const QColor& color)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

}

class StatusItems::Item final : public host::StatusItem {
public:
    explicit Item(StatusItems& owner)
        : owner_(owner)
        , items_(owner.items_)
        , facts_(std::make_shared<host::StatusItemFacts>())
    {
        owner.items_->push_back(facts_);
    }

    ~Item() override
    {
        if (const auto items = items_.lock()) {
            std::erase(*items, facts_);
            owner_.notices_.sceneChanged();
        }
    }

    void update(host::StatusItemFacts facts) override
    {
        *facts_ = std::move(facts);
        if (!items_.expired())
            owner_.notices_.sceneChanged();
    }

    std::optional<CGRect> frame() const override
    {
        const QRectF place = items_.expired() ? QRectF() : owner_.place(*facts_);
        if (place.isEmpty())
            return std::nullopt;
        const CGRect corner = owner_.screens_.flipped(owner_.screens_.all().front().frame);
        return owner_.screens_.flipped({ corner.x + place.x(), corner.y + place.y(), place.width(), place.height() });
    }

private:
    StatusItems& owner_;
    /// Gone with the owner.
    std::weak_ptr<Items> items_;
    std::shared_ptr<host::StatusItemFacts> facts_;
};

std::unique_ptr<host::StatusItem> StatusItems::add()
{
    return std::make_unique<Item>(*this);
}

void StatusItems::paint(QPainter& painter, std::size_t screen) const
{
    if (screen != 0)
        return;
    for (const auto& item : *items_) {
        const QRectF place = this->place(*item);
        if (item->shape && !place.isEmpty())
            painter.drawImage(
                (place.center() - QPointF(side, side) / 2).toPoint(), tinted(item->shape(side), textColor));
    }
}

const host::StatusItemFacts* StatusItems::itemAt(const QPointF& point, std::size_t screen) const
{
    const auto found
        = std::ranges::find_if(*items_, [&](const auto& item) { return screen == 0 && place(*item).contains(point); });
    return found == items_->end() ? nullptr : found->get();
}

QRectF StatusItems::place(const host::StatusItemFacts& item) const
{
    if (screens_.all().empty())
        return {};
    const Screen& screen = screens_.all().front();
    if (screens_.isFullScreen(screen.currentSpace))
        return {};
    const auto found = std::ranges::find_if(*items_, [&](const auto& each) { return each.get() == &item; });
    const double end = margin + mark * static_cast<double>(screen.spaces.size());
    const double left = screen.frame.width - end - width * static_cast<double>(found - items_->begin() + 1);
    return { left, 0, width, screen.menuBarHeight };
}

}
