#pragma once

class QWidget;

/// How the layer lets go of a widget of the toolkit: it is hidden at once, and deleted when the outermost loop next
/// goes round. Until then the toolkit may be in the middle of delivering an event to it, or one of its handlers may
/// have begun a loop of its own. Main thread.
struct RetireWidget {
    void operator()(QWidget* widget) const;
};
