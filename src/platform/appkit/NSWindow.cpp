#include "appkit/NSWindow.h"

#include "appkit/NSScreen.h"
#include "appkit/NSViewController.h"
#include "appkit/Pixels.h"
#include "appkit/ProgramIcon.h"
#include "appkit/RetiredWidget.h"
#include "base/RunLoop.h"
#include "foundation/NSUserDefaults.h"
#include "host/Desktop.h"
#include "host/Surfaces.h"

#include <QEvent>
#include <QIcon>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace {

host::Surfaces& surfaces()
{
    return host::Desktop::current().surfaces();
}

/// Outlives every window, whatever goes first at the end of the process.
std::vector<NSWindow*>& windows()
{
    static auto& all = *new std::vector<NSWindow*>;
    return all;
}

// A saved frame: its four numbers, x, y, width and height in whole points, with blanks between.

std::string described(const CGRect& frame)
{
    std::string text;
    for (const double number : { frame.x, frame.y, frame.width, frame.height })
        text += (text.empty() ? "" : " ") + std::to_string(std::lround(number));
    return text;
}

std::optional<CGRect> frameIn(const std::string& text)
{
    std::array<int, 4> numbers {};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int& number : numbers) {
        while (at != end && *at == ' ')
            ++at;
        const auto [next, error] = std::from_chars(at, end, number);
        if (error != std::errc())
            return std::nullopt;
        at = next;
    }
    if (numbers[2] <= 0 || numbers[3] <= 0)
        return std::nullopt;
    return CGRect { double(numbers[0]), double(numbers[1]), double(numbers[2]), double(numbers[3]) };
}

/// Where a range of that length must begin to lie within another; where that is too short, at its beginning.
double shifted(double low, double length, double from, double to)
{
    return std::clamp(low, from, std::max(from, to - length));
}

double overlap(const CGRect& a, const CGRect& b)
{
    const CGRect common = CGRectIntersection(a, b);
    return CGRectIsNull(common) ? 0 : common.width * common.height;
}

/// The frame, on the screen that has most of it: one that has none is moved in, one that is too large made to fit.
CGRect onScreen(CGRect frame)
{
    const auto screens = NSScreen::screens();
    if (screens.empty())
        return frame;
    const auto best = std::max_element(screens.begin(), screens.end(), [&](const NSScreen& a, const NSScreen& b) {
        return overlap(frame, a.visibleFrame()) < overlap(frame, b.visibleFrame());
    });
    const CGRect& room = best->visibleFrame();
    frame.width = std::min(frame.width, room.width);
    frame.height = std::min(frame.height, room.height);
    frame.x = shifted(frame.x, frame.width, room.x, room.maxX());
    frame.y = shifted(frame.y, frame.height, room.y, room.maxY());
    return frame;
}

}

/// What the user does to the window by its title bar and edges.
class NSWindow::Watch final : public QObject {
public:
    Watch(NSWindow& window, QWidget& widget)
        : QObject(&widget)
        , window_(window)
    {
        widget.installEventFilter(this);
    }

private:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const RunLoop::Turn turn;
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            window_.didMove();
        if (event->type() != QEvent::Close)
            return false;
        event->ignore();
        window_.willClose();
        return true;
    }

    NSWindow& window_;
};

void NSWindow::Retire::operator()(QWidget* widget) const
{
    if (host::Desktop::hasCurrent())
        surfaces().release(*widget);
    // Its content goes at once: it knows things that may go next.
    qDeleteAll(widget->findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
    RetireWidget()(widget);
}

NSWindow::NSWindow(std::shared_ptr<NSViewController> content)
    : content_(std::move(content))
{
    windows().push_back(this);
}

NSWindow::~NSWindow()
{
    std::erase(windows(), this);
}

void NSWindow::setContentSize(CGSize size)
{
    frame_.width = size.width;
    frame_.height = size.height;
}

void NSWindow::center()
{
    const auto screen = NSScreen::mainScreen();
    if (!screen || frameIn(NSUserDefaults::standard().stringForKey(autosaveKey_).value_or("")))
        return;
    const CGRect& room = screen->visibleFrame();
    frame_.x = std::round(room.midX() - frame_.width / 2);
    frame_.y = std::round(room.midY() - frame_.height / 2);
}

void NSWindow::setFrameAutosaveName(const std::string& name)
{
    autosaveKey_ = "NSWindow Frame " + name;
    const auto saved = NSUserDefaults::standard().stringForKey(autosaveKey_);
    if (const auto frame = saved ? frameIn(*saved) : std::nullopt)
        frame_
            = { frame->x, frame->y, std::max(frame->width, minSize_.width), std::max(frame->height, minSize_.height) };
}

void NSWindow::makeWidget()
{
    widget_.reset(new QWidget);
    widget_->setWindowTitle(QString::fromStdString(title_));
    widget_->setWindowIcon(programIcon());
    widget_->setMinimumSize(Pixels::from(minSize_.width), Pixels::from(minSize_.height));
    auto* layout = new QVBoxLayout(widget_.get());
    layout->setContentsMargins({});
    layout->addWidget(content_->loadView());
    surfaces().adopt(*widget_, { .role = host::SurfaceRole::window }, frame_);
    new Watch(*this, *widget_);
}

void NSWindow::makeKeyAndOrderFront()
{
    if (!widget_) {
        frame_ = onScreen(frame_);
        makeWidget();
    } else if (!isVisible()) {
        // Some window managers move a window when they let go of it.
        surfaces().setFrame(*widget_, frame_);
        keepOnScreens();
    }
    surfaces().orderFront(*widget_);
    surfaces().takeKeyboard(*widget_);
}

void NSWindow::close()
{
    if (isVisible())
        willClose();
}

void NSWindow::willClose()
{
    saveFrame();
    if (delegate_)
        delegate_->windowWillClose();
    surfaces().orderOut(*widget_);
}

bool NSWindow::isVisible() const
{
    return widget_ && widget_->isVisible();
}

NSWindow* NSWindow::keyWindow()
{
    const auto key = std::find_if(windows().begin(), windows().end(),
        [](const NSWindow* window) { return window->isVisible() && window->widget()->isActiveWindow(); });
    return key == windows().end() ? nullptr : *key;
}

CGRect NSWindow::frame() const
{
    return widget_ ? surfaces().frame(*widget_).value_or(frame_) : frame_;
}

/// A window that is being dragged moves many times a second.
void NSWindow::didMove()
{
    constexpr double delay = 0.5;
    if (std::exchange(isSaveDue_, true))
        return;
    RunLoop::main().schedule(delay, [this, lives = std::weak_ptr(lives_)] {
        if (lives.expired())
            return;
        isSaveDue_ = false;
        if (isVisible())
            saveFrame();
    });
}

void NSWindow::saveFrame()
{
    const CGRect now = frame();
    if (autosaveKey_.empty() || !isVisible() || widget_->isMinimized() || now == std::exchange(frame_, now))
        return;
    NSUserDefaults::standard().setObject(described(now), autosaveKey_);
}

void NSWindow::keepOnScreens()
{
    const CGRect lies = frame();
    const auto screens = NSScreen::screens();
    const bool isSeen = std::any_of(screens.begin(), screens.end(),
        [&](const NSScreen& screen) { return CGRectIntersectsRect(lies, screen.visibleFrame()); });
    if (!isSeen)
        surfaces().setFrame(*widget_, onScreen(lies));
}

void NSWindow::endAll()
{
    for (NSWindow* window : windows())
        window->widget_.reset();
}

void NSWindow::keepAllOnScreens()
{
    for (NSWindow* window : windows()) {
        if (window->isVisible())
            window->keepOnScreens();
    }
}

void NSWindow::remakeAll()
{
    const std::vector<NSWindow*> all = windows();
    for (NSWindow* window : all)
        window->remake();
}

void NSWindow::remake()
{
    if (!widget_)
        return;
    frame_ = frame();
    const bool wasVisible = isVisible();
    widget_.reset();
    if (wasVisible)
        makeKeyAndOrderFront();
}
