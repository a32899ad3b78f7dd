#pragma once

#include "appkit/NSViewController.h"
#include "forms/Form.h"
#include "forms/ObservableObject.h"

#include <functional>
#include <memory>

/// Shows a description, and what differs of it after each change of what it was made from. Main thread.
class NSHostingController final : public NSViewController {
public:
    /// `body` describes what is to be shown as of now. The object must outlive this.
    NSHostingController(std::function<forms::NavigationSplitView()> body, ObservableObject& observed);
    ~NSHostingController() override;

    QWidget* loadView() override;

private:
    struct State;
    std::shared_ptr<State> state_;
};
