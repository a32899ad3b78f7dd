#pragma once

#include "host/Surfaces.h"

#include <sys/types.h>

#include <optional>
#include <vector>

namespace embedded {

class World;

/// A panel of the program and what it asked for.
struct Panel {
    QWidget* widget = nullptr;
    host::SurfaceStyle style;
    /// Screen space.
    CGRect frame;
    bool isVisible = false;
    /// The part whose background is to be blurred, in the widget's coordinates; empty for none.
    CGRect backdrop;
};

/// Where panels show when somebody looks: the view's displays.
class Stage {
public:
    virtual ~Stage() = default;

    /// Takes the widget in at a frame in window space; an ordinary window gets a title bar and edges to hold it by.
    virtual void put(QWidget& widget, const CGRect& frame, bool isWindow) = 0;
    /// Lets it go again, with what it got.
    virtual void letGo(QWidget& widget) = 0;
    /// Where it lies, in window space.
    virtual CGRect place(const QWidget& widget) const = 0;
    /// What stands on the stage for a widget: itself, or that which has its title bar.
    static QWidget& outermost(QWidget& widget);
    /// Which panels show, where, or what they want of their background has changed.
    virtual void panelsChanged() = 0;
    /// What is typed goes to the desktop again, not to a panel.
    virtual void takeBackKeyboard(const QWidget& panel) = 0;
};

/// The program's panels. Without a stage they are windows of the toolkit, at their places. Main thread.
class Surfaces final : public host::Surfaces {
public:
    explicit Surfaces(World& world)
        : world_(world)
    {
    }

    void adopt(QWidget& widget, const host::SurfaceStyle& style, const CGRect& frame) override;
    void release(QWidget& widget) override;
    void setRole(QWidget& widget, host::SurfaceRole role) override;
    void setFrame(QWidget& widget, const CGRect& frame) override;
    std::optional<CGRect> frame(const QWidget& widget) override;
    void orderFront(QWidget& widget) override;
    void orderOut(QWidget& widget) override;
    void takeKeyboard(QWidget& widget) override;
    void giveBackKeyboard() override;
    void setBackdrop(QWidget& widget, const CGRect& rect) override;
    bool canBlend() override { return true; }

    /// The user has turned to a window of the program.
    void turnTo(QWidget& widget);

    /// Front first, by level and within a level by who came last.
    const std::vector<Panel>& panels() const { return panels_; }
    /// Null where there is no such panel.
    const Panel* find(const QWidget& widget) const;

    /// Moves all panels onto the stage; with null, off it and out of sight.
    void setStage(Stage* stage);

private:
    Panel* find(const QWidget& widget);
    void place(const Panel& panel) const;
    void giveBackFrom(const QWidget& widget);
    void stack() const;

    World& world_;
    Stage* stage_ = nullptr;
    std::vector<Panel> panels_;

    struct Keyboard {
        QWidget* holder;
        /// The application that had it before.
        std::optional<pid_t> previous;
    };
    std::optional<Keyboard> keyboard_;
};

}
