#pragma once

class QWidget;

/// What makes the content of an ordinary window, and keeps it up to date. Main thread.
class NSViewController {
public:
    virtual ~NSViewController() = default;

    /// The toolkit's widget of the content, made anew: for a window that is first shown, and again when the desktop's
    /// scale has changed. The window owns it. For the layer's own use.
    virtual QWidget* loadView() = 0;
};
