#pragma once

#include "base/CGGeometry.h"

#include <memory>
#include <optional>
#include <string>

class NSViewController;
class QWidget;

class NSWindowDelegate {
public:
    virtual ~NSWindowDelegate() = default;
    /// The user closes the window. It is still there afterwards, out of sight.
    virtual void windowWillClose() = 0;
};

/// An ordinary window of the desktop: titled, moved, resized and closed by the user, in the theme of the user's
/// toolkit. It costs nothing until it is first shown, and outlives being closed. Main thread.
class NSWindow {
public:
    explicit NSWindow(std::shared_ptr<NSViewController> content);
    ~NSWindow();
    NSWindow(const NSWindow&) = delete;
    NSWindow& operator=(const NSWindow&) = delete;

    void setTitle(std::string title) { title_ = std::move(title); }
    /// In points, without the title bar.
    void setContentSize(CGSize size);
    void setMinSize(CGSize size) { minSize_ = size; }
    /// Where the content lies, in the middle of the main screen, unless the user has left it elsewhere.
    void center();
    /// Keeps where the user puts the window under this name in the program's defaults, and takes what was kept there
    /// into force: at least a part of its title must be on a screen.
    void setFrameAutosaveName(const std::string& name);
    void setDelegate(NSWindowDelegate* delegate) { delegate_ = delegate; }

    /// Shows it in front of everybody's windows, with the keyboard.
    void makeKeyAndOrderFront();
    /// What the close button does.
    void close();
    bool isVisible() const;
    /// Of the content, in screen space.
    CGRect frame() const;

    /// The one with the keyboard; null when none has it.
    static NSWindow* keyWindow();

    /// The toolkit's widget; null before it is first shown. For the layer's own use.
    QWidget* widget() const { return widget_.get(); }
    /// The desktop's scale has changed: every window is made anew, at its place.
    static void remakeAll();
    /// Takes every window off the desktop for good, while there is one: who owns them may only go with the process.
    static void endAll();
    /// A screen has gone or changed: a window that lay on it comes to another.
    static void keepAllOnScreens();

private:
    class Watch;
    struct Retire {
        void operator()(QWidget* widget) const;
    };

    void makeWidget();
    void remake();
    void keepOnScreens();
    void didMove();
    void saveFrame();
    void willClose();

    std::shared_ptr<NSViewController> content_;
    std::string title_;
    CGSize minSize_ { 0, 0 };
    CGRect frame_;
    std::string autosaveKey_;
    bool isSaveDue_ = false;
    NSWindowDelegate* delegate_ = nullptr;
    std::unique_ptr<QWidget, Retire> widget_;
    /// Ends with the window, for what comes later.
    std::shared_ptr<bool> lives_ = std::make_shared<bool>(true);
};
