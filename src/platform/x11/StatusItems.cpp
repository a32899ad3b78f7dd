#include "x11/StatusItems.h"

#include "base/RunLoop.h"
#include "x11/Property.h"
#include "x11/Selections.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QKeySequence>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QSystemTrayIcon>

#include <algorithm>

namespace x11 {
namespace {

/// When to look again whether a menu is still open, in seconds.
constexpr double untilClosed = 0.5;
/// The sizes that trays have room for, in pixels.
constexpr int sides[] = { 16, 18, 20, 22, 24, 28, 32, 48, 64 };
const QColor light(0xF2, 0xF3, 0xF5);
const QColor dark(0x1A, 0x1C, 0x22);

QImage tinted(QImage shape, const QColor& color)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

/// Light with a dark edge, which can be seen on any panel.
QImage edged(const QImage& shape)
{
    QImage image(shape.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QImage edge = tinted(shape, dark);
    for (int x = -1; x <= 1; ++x)
        for (int y = -1; y <= 1; ++y)
            painter.drawImage(x, y, edge);
    painter.drawImage(0, 0, tinted(shape, light));
    return image;
}

QIcon icon(const host::StatusItemFacts& facts, const std::optional<QColor>& color)
{
    QIcon icon;
    for (const int side : sides) {
        const QImage shape = facts.shape(side);
        icon.addPixmap(QPixmap::fromImage(color ? tinted(shape, *color) : edged(shape)));
    }
    return icon;
}

}

/// The toolkit's icon, as soon as it is known how to make it.
class StatusItems::Item final : public host::StatusItem {
public:
    Item(std::shared_ptr<std::vector<Item*>> items, StatusItems& owner)
        : items_(items)
        , owner_(owner)
    {
        items->push_back(this);
    }

    ~Item() override
    {
        if (const auto items = items_.lock())
            std::erase(*items, this);
    }

    void update(host::StatusItemFacts facts) override
    {
        const bool hadShape = static_cast<bool>(facts_.shape);
        facts_ = std::move(facts);
        fillMenu();
        if (!hadShape && !items_.expired())
            owner_.follow();
    }

    std::optional<CGRect> frame() const override
    {
        const QRect rect = tray_ ? tray_->geometry() : QRect();
        if (rect.isEmpty() || items_.expired())
            return std::nullopt;
        return owner_.monitors_.points().screenSpace(Rect { rect.x(), rect.y(), rect.width(), rect.height() });
    }

    /// A panel on the bus shows the menu itself.
    void show(bool isOnBus, const std::optional<QColor>& color)
    {
        if (!facts_.shape)
            return;
        const bool isNew = !tray_;
        if (isNew)
            make(isOnBus);
        tray_->setIcon(icon(facts_, color));
        tray_->setToolTip(QString::fromStdString(facts_.description));
        if (isNew)
            tray_->show();
    }

private:
    void make(bool isOnBus)
    {
        tray_ = std::make_unique<QSystemTrayIcon>();
        if (isOnBus)
            tray_->setContextMenu(&menu_);
        QObject::connect(tray_.get(), &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context)
                press();
        });
    }

    void press() const
    {
        const QRect known = tray_->geometry();
        const QRect item = known.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : known;
        const QScreen* screen = QGuiApplication::screenAt(item.center());
        if (facts_.onPress)
            facts_.onPress(item, (screen ? screen : QGuiApplication::primaryScreen())->geometry());
    }

    /// Entries keep what a panel knows them by as long as their number stays.
    void fillMenu()
    {
        const auto& entries = facts_.entries;
        if (menu_.actions().size() != std::ssize(entries)) {
            menu_.clear();
            for (std::size_t index = 0; index < entries.size(); ++index)
                QObject::connect(menu_.addAction(QString()), &QAction::triggered, [this, index] {
                    if (index < facts_.entries.size())
                        facts_.entries[index].choose();
                });
        }
        for (std::size_t index = 0; index < entries.size(); ++index) {
            QAction& action = *menu_.actions().at(static_cast<qsizetype>(index));
            action.setSeparator(entries[index].title.empty());
            action.setText(QString::fromStdString(entries[index].title).replace(u'&', QStringLiteral("&&")));
            action.setToolTip(QString::fromStdString(entries[index].toolTip));
            action.setEnabled(entries[index].isEnabled);
            // The toolkit's name for that key.
            const auto keys = QString::fromStdString(entries[index].keys).replace("Super", "Meta");
            action.setShortcut(QKeySequence::fromString(keys));
        }
    }

    /// Gone with the owner.
    std::weak_ptr<std::vector<Item*>> items_;
    StatusItems& owner_;
    host::StatusItemFacts facts_;
    QMenu menu_;
    std::unique_ptr<QSystemTrayIcon> tray_;
};

StatusItems::StatusItems(
    freedesktop::LastingBus& bus, Connection& connection, const Monitors& monitors, std::function<void()> hasWaited)
    : connection_(connection)
    , monitors_(monitors)
    , hasWaited_(std::move(hasWaited))
    , notifier_(bus)
{
    notifier_.onChange = [this] { follow(); };
}

StatusItems::~StatusItems() = default;

std::unique_ptr<host::StatusItem> StatusItems::add()
{
    return std::make_unique<Item>(items_, *this);
}

void StatusItems::handle(const xcb_generic_event_t& event)
{
    if (tellsOfSelection(connection_, event, connection_.atoms().tray))
        follow();
}

void StatusItems::follow()
{
    if (items_->empty() || !notifier_.isThere())
        return;
    // The toolkit may show a window of its own for an item, and then closes what has popped up.
    if (QApplication::activePopupWidget()) {
        RunLoop::main().schedule(untilClosed, [this, alive = std::weak_ptr(items_)] {
            if (!alive.expired())
                follow();
        });
        return;
    }
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, connection_.atoms().tray), nullptr));
    const xcb_window_t tray = owner ? owner->owner : xcb_window_t(XCB_WINDOW_NONE);
    const bool isOnBus = *notifier_.isThere();
    if (!isOnBus && tray == XCB_WINDOW_NONE)
        return;
    const auto color = isOnBus ? std::nullopt : trayColor(tray);
    for (Item* item : *items_)
        item->show(isOnBus, color);
    hasWaited_();
}

std::optional<QColor> StatusItems::trayColor(xcb_window_t tray) const
{
    // Red, green and blue in 16 bits each: of plain icons first, then of three other kinds.
    constexpr std::uint32_t length = 12;
    const Property property
        = awaitProperty(connection_, requestProperty(connection_, tray, connection_.atoms().trayColors, length));
    const auto numbers = property.numbers(XCB_ATOM_CARDINAL);
    if (numbers.size() < 3)
        return std::nullopt;
    const auto channel = [](std::uint32_t value) { return static_cast<int>(std::min(value, 0xFFFFu) >> 8); };
    return QColor(channel(numbers[0]), channel(numbers[1]), channel(numbers[2]));
}

}
