#pragma once

#include "embedded/Surfaces.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace embedded {

class DisplayWidget;
class EmbeddedDesktop;

/// The desktop to look at and to use: one window of the toolkit, in which the displays lie as they are arranged. Main
/// thread.
class View final : public QWidget, public Stage {
public:
    explicit View(EmbeddedDesktop& desktop);
    ~View() override;

    void sceneChanged();

    void put(QWidget& widget, const CGRect& frame, bool isWindow) override;
    void letGo(QWidget& widget) override;
    CGRect place(const QWidget& widget) const override;
    void panelsChanged() override;
    void takeBackKeyboard(const QWidget& panel) override;

    std::function<void()> onClosed;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    std::vector<CGRect> frames() const;
    void arrange();
    bool isSwallowed(const QKeyEvent& event);
    void bringForward(QWidget& pressed);
    void followPointer(const QWidget& widget, const QMouseEvent& move);

    EmbeddedDesktop& desktop_;
    /// The frames of the displays that were made, window space.
    std::vector<CGRect> arranged_;
    std::vector<DisplayWidget*> displays_;
};

}
