#include "appkit/MenuWindow.h"

#include "appkit/Fonts.h"
#include "appkit/ImageCache.h"
#include "appkit/NSFont.h"
#include "appkit/NSMenu.h"
#include "appkit/NSPanel.h"
#include "appkit/NSView.h"
#include "appkit/Pixels.h"
#include "base/RunLoop.h"

#include <QElapsedTimer>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QIconEngine>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>
#include <optional>

namespace {

constexpr double fontSize = 13;
/// No entry is wider than this, in points.
constexpr double greatestTextWidth = 420;
/// More of a title than this is never seen, in characters.
constexpr int greatestTextLength = 400;

const QColor backgroundColor(0x26, 0x28, 0x2E);
const QColor textColor(0xF2, 0xF3, 0xF5);

/// Dark whatever the user's theme, as the bars are. In points, each length written "NUMBERpt".
constexpr const char* style = R"(
QMenu { background: #26282e; color: #f2f3f5; border: 1pt solid #4a4d55; padding: 5pt; menu-scrollable: 1; icon-size: 16pt; }
QMenu::item { padding: 5pt 26pt 5pt 12pt; border-radius: 5pt; background: transparent; }
QMenu::item:selected { background: #3d6fd9; color: #ffffff; }
QMenu::item:disabled { color: #8d9099; }
QMenu::item:disabled:selected { background: transparent; }
QMenu::icon { padding-left: 7pt; }
QMenu::right-arrow { width: 10pt; height: 10pt; }
QMenu::indicator { width: 14pt; height: 14pt; }
QMenu::indicator:checked { image: url(:/symbols/checkmark.svg); }
QMenu::separator { height: 1pt; background: #43464e; margin: 5pt 8pt; }
)";

QString styleInPixels()
{
    static const QRegularExpression length(QStringLiteral("(\\d+)pt"));
    QString text = QString::fromLatin1(style);
    for (auto found = length.match(text); found.hasMatch(); found = length.match(text, found.capturedStart()))
        text.replace(found.capturedStart(), found.capturedLength(),
            QString::number(Pixels::from(found.captured(1).toInt())) + QStringLiteral("px"));
    return text;
}

/// How long one painting of a menu spends on pictures that have to be read first. The others come with the next one, so
/// that the menu is there at once whatever its pictures are.
class PaintTime {
public:
    void begin()
    {
        isShort_ = false;
        timer_.start();
    }
    /// Whether there is time for one more; if not, it was wanted.
    bool allows()
    {
        constexpr qint64 milliseconds = 15;
        isShort_ |= timer_.elapsed() >= milliseconds;
        return !isShort_;
    }
    bool wasShort() const { return isShort_; }

private:
    QElapsedTimer timer_;
    bool isShort_ = false;
};

/// Reads an image when it is first seen: of a long menu hardly any is.
class ImageEngine final : public QIconEngine {
public:
    ImageEngine(NSImage image, std::shared_ptr<PaintTime> time)
        : image_(std::move(image))
        , time_(std::move(time))
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(rect, pixmap(rect.size(), mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        if (pixmap_.size() != size && time_->allows())
            pixmap_ = ImageCache::pixmap(image_, size);
        return pixmap_;
    }

    QIconEngine* clone() const override { return new ImageEngine(image_, time_); }

private:
    NSImage image_;
    std::shared_ptr<PaintTime> time_;
    QPixmap pixmap_;
};

/// One line of text, as the toolkit's menus take it.
QString label(const NSMenuItem& item, const QFontMetrics& metrics)
{
    QString text = QString::fromStdString(item.title()).left(greatestTextLength);
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, u' ');
    text = metrics.elidedText(text, Qt::ElideMiddle, Pixels::from(greatestTextWidth));
    text.replace(QStringLiteral("&"), QStringLiteral("&&"));
    if (const std::string keys = MenuWindow::keys(item); !keys.empty())
        text += QStringLiteral("\t") + QString::fromStdString(keys);
    return text;
}

Qt::KeyboardModifiers modifiers(const NSMenuItem& item)
{
    const bool hasOption = (item.keyEquivalentModifierMask() & NSEventModifierFlagOption) != 0;
    return hasOption ? Qt::MetaModifier | Qt::AltModifier : Qt::MetaModifier;
}

/// To the right of the point and below it; to its left or above it where the screen ends sooner.
QPoint corner(QPoint point, QSize size, const QRect& room)
{
    const auto fitted = [](int at, int length, int first, int end) {
        const int before = at + length <= end ? at : at - length;
        return std::clamp(before, first, std::max(first, end - length));
    };
    return { std::clamp(point.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())),
        fitted(point.y(), size.height(), room.top(), room.bottom() + 1) };
}

QRect onScreen(const QWidget& widget)
{
    return { widget.mapToGlobal(QPoint()), widget.size() };
}

/// The screen around a point, or the display that a panel lies in; less the bar that spans an edge of it.
QRect roomBeside(const QWidget& panel, QPoint point)
{
    const QScreen* screen = QGuiApplication::screenAt(point);
    QRect room = (screen ? screen : QGuiApplication::primaryScreen())->geometry();
    if (panel.parentWidget())
        room = room.intersected(onScreen(*panel.parentWidget()));
    const QRect taken = onScreen(panel);
    if (taken.width() < room.width() || taken.height() > room.height() / 2)
        return room;
    if (taken.center().y() < room.center().y())
        room.setTop(taken.bottom() + 1);
    else
        room.setBottom(taken.top() - 1);
    return room;
}

class MenuWidget final : public QMenu {
public:
    MenuWidget(std::shared_ptr<const NSMenu> menu, QWidget* parent)
        : QMenu(parent)
        , menu_(std::move(menu))
    {
        // A press that closes the menu does nothing else.
        setAttribute(Qt::WA_NoMouseReplay);
        setToolTipsVisible(true);
        setFont(toolkitFont(NSFont::systemFont(fontSize)));
        setPalette(QPalette(textColor, backgroundColor)); // For what the style sheet has no word for: arrows.
        connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) { toldState_ = state; });
        const QFontMetrics metrics(font());
        for (const NSMenuItem& item : menu_->itemArray())
            add(item, metrics);
    }

    const std::shared_ptr<const NSMenu>& menu() const { return menu_; }

    /// Opens at the point as far as there is room; one that is longer scrolls.
    void popUp(QPoint point, const QRect& room);

protected:
    /// The toolkit places menus by what it believes to be free of the screen, which isn't right on every desktop.
    void showEvent(QShowEvent* event) override
    {
        // The toolkit has said so itself, but to a window that it has changed since.
        setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu, false);
        setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu, true);
        if (corner_)
            move(*corner_);
        QMenu::showEvent(event);
    }
    void paintEvent(QPaintEvent* event) override
    {
        paintTime_->begin();
        QMenu::paintEvent(event);
        if (paintTime_->wasShort())
            update();
    }
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void add(const NSMenuItem& item, const QFontMetrics& metrics);

    std::shared_ptr<const NSMenu> menu_;
    std::shared_ptr<PaintTime> paintTime_ = std::make_shared<PaintTime>();
    /// Absent in a submenu.
    std::optional<QPoint> corner_;
    /// Whether the program was active, as last told.
    Qt::ApplicationState toldState_ = QGuiApplication::applicationState();
};

/// The toolkit closes what has popped up when the program stops being the active one, before it tells anybody. Here
/// that means nothing: a bar's menu opens while another program is active, and often just as one of our windows has
/// gone.
void MenuWidget::closeEvent(QCloseEvent* event)
{
    if (QGuiApplication::applicationState() == toldState_)
        QMenu::closeEvent(event);
    else
        event->ignore();
}

void MenuWidget::popUp(QPoint point, const QRect& room)
{
    setMaximumHeight(room.height());
    const QSize size = sizeHint().boundedTo(maximumSize());
    corner_ = corner(point, size, room);
    popup(*corner_);
}

void MenuWidget::add(const NSMenuItem& item, const QFontMetrics& metrics)
{
    if (item.isSeparatorItem()) {
        addSeparator();
        return;
    }
    QAction* action = addAction(label(item, metrics));
    action->setEnabled(item.isEnabled());
    action->setToolTip(QString::fromStdString(item.toolTip()));
    if (item.state()) {
        action->setCheckable(true);
        action->setChecked(true);
    }
    if (item.image())
        action->setIcon(QIcon(new ImageEngine(*item.image(), paintTime_)));
    if (item.submenu())
        action->setMenu(new MenuWidget(item.submenu(), this));
    // Once the menu has closed: what is done may need the keyboard, or take the menu's bar away.
    connect(action, &QAction::triggered,
        [menu = menu_, &item] { RunLoop::main().perform([menu, &item] { item.perform(); }); });
}

/// Key equivalents work while the menu is open. The toolkit would close it at Alt, also at one that was pressed for
/// something else just before the menu opened, and told late.
void MenuWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Alt)
        return;
    const auto& items = menu_->itemArray();
    const std::string typed = event->text().toLower().toStdString();
    const auto held = event->modifiers() & (Qt::MetaModifier | Qt::AltModifier);
    const auto chosen = std::find_if(items.begin(), items.end(), [&](const NSMenuItem& item) {
        return !typed.empty() && item.keyEquivalent() == typed && held == modifiers(item);
    });
    if (chosen == items.end()) {
        QMenu::keyPressEvent(event);
        return;
    }
    QAction* action = actions().at(chosen - items.begin());
    close();
    action->trigger();
}

QPointer<MenuWidget>& openMenu()
{
    static QPointer<MenuWidget> menu;
    return menu;
}

/// Closes the menu when the panel it belongs to goes.
class WindowWatch final : public QObject {
public:
    explicit WindowWatch(QMenu& menu)
        : QObject(&menu)
        , menu_(menu)
    {
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Hide)
            menu_.close();
        return false;
    }

private:
    QMenu& menu_;
};

/// The one that will be open, in the place of another that is.
MenuWidget* make(const std::shared_ptr<const NSMenu>& menu, QWidget* parent)
{
    MenuWindow::close();
    auto* widget = new MenuWidget(menu, parent);
    widget->setStyleSheet(styleInPixels());
    openMenu() = widget;
    QObject::connect(widget, &QMenu::aboutToHide, widget, &QObject::deleteLater);
    return widget;
}

}

void MenuWindow::open(const std::shared_ptr<const NSMenu>& menu, const NSView& view, CGPoint point)
{
    MenuWidget* widget = make(menu, view.widget());
    QWidget& panel = view.window() ? *view.window()->widget() : *view.widget();
    panel.installEventFilter(new WindowWatch(*widget));

    const CGPoint inView = view.convertFromWindow(point);
    const double down = view.isFlipped() ? inView.y : view.frame().height - inView.y;
    const QPoint anchor = view.widget()->mapToGlobal(QPoint(Pixels::from(inView.x), Pixels::from(down)));
    widget->popUp(anchor, roomBeside(panel, anchor));
}

void MenuWindow::openBeside(const std::shared_ptr<const NSMenu>& menu, const QRect& item, const QRect& room)
{
    const bool isBelow = item.center().y() < room.center().y();
    make(menu, nullptr)->popUp(isBelow ? item.bottomLeft() + QPoint(0, 1) : item.topLeft(), room);
}

void MenuWindow::close()
{
    if (openMenu())
        openMenu()->close();
}

std::shared_ptr<const NSMenu> MenuWindow::current()
{
    return openMenu() && openMenu()->isVisible() ? openMenu()->menu() : nullptr;
}

std::string MenuWindow::keys(const NSMenuItem& item)
{
    if (item.keyEquivalent().empty())
        return {};
    const bool hasOption = modifiers(item).testFlag(Qt::AltModifier);
    return (hasOption ? "Alt+Super+" : "Super+") + QString::fromStdString(item.keyEquivalent()).toUpper().toStdString();
}
