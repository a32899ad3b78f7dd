#include "hosting/NSHostingController.h"

#include "appkit/Pixels.h"
#include "base/RunLoop.h"
#include "widgets/FormLook.h"
#include "widgets/FormWidget.h"
#include "widgets/SidebarWidget.h"

#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <map>

namespace {

/// A sidebar, and beside it the title and the form of what is selected in it. Each form that was shown is kept, with
/// the place that it was scrolled to.
class SplitWidget final : public QSplitter {
public:
    explicit SplitWidget(std::function<forms::NavigationSplitView()> body);

    /// Shows what there is now; later, when it isn't seen.
    void update();

private:
    void showEvent(QShowEvent* event) override
    {
        update();
        QSplitter::showEvent(event);
    }
    void chain(const FormWidget& form);

    std::function<forms::NavigationSplitView()> body_;
    /// What is shown.
    forms::NavigationSplitView view_;
    SidebarWidget* sidebar_ = new SidebarWidget(this);
    StyledLabel* title_ = new StyledLabel;
    QStackedWidget* details_ = new QStackedWidget;
    std::map<std::string, FormWidget*> forms_;
};

SplitWidget::SplitWidget(std::function<forms::NavigationSplitView()> body)
    : body_(std::move(body))
{
    setChildrenCollapsible(false);
    setHandleWidth(1);
    auto* detail = new QWidget(this);
    auto* layout = new QVBoxLayout(detail);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    title_->setFont(FormLook::font(17, QFont::DemiBold));
    title_->setContentsMargins(Pixels::from(32), Pixels::from(16), Pixels::from(32), Pixels::from(10));
    layout->addWidget(title_);
    layout->addWidget(details_, 1);

    view_ = body_();
    sidebar_->setMinimumWidth(Pixels::from(view_.narrowest));
    sidebar_->setMaximumWidth(Pixels::from(view_.widest));
    setStretchFactor(1, 1);
    setSizes({ Pixels::from(view_.ideal), Pixels::from(view_.ideal) * 3 });
    sidebar_->onSelect = [this](const std::string& id) {
        view_.select(id);
        update();
    };
}

void SplitWidget::update()
{
    view_ = body_();
    sidebar_->show(view_.sidebar, view_.selection);
    title_->setText(QString::fromStdString(view_.title));
    FormWidget*& form = forms_[view_.selection];
    if (!form) {
        form = new FormWidget;
        details_->addWidget(form);
    }
    form->show(view_.detail);
    details_->setCurrentWidget(form);
    chain(*form);
}

/// Tab goes in the order seen: rows may have changed places.
void SplitWidget::chain(const FormWidget& form)
{
    QWidget* last = sidebar_;
    for (QWidget* next : form.focusChain()) {
        setTabOrder(last, next);
        last = next;
    }
}

}

struct NSHostingController::State {
    std::function<forms::NavigationSplitView()> body;
    QPointer<SplitWidget> widget;
    bool isDue = false;
};

NSHostingController::NSHostingController(std::function<forms::NavigationSplitView()> body, ObservableObject& observed)
    : state_(std::make_shared<State>(State { std::move(body), nullptr, false }))
{
    // However many changes a turn makes, they are shown once.
    observed.objectWillChange = [weak = std::weak_ptr(state_)] {
        const auto state = weak.lock();
        if (!state || !state->widget || !state->widget->isVisible() || std::exchange(state->isDue, true))
            return;
        RunLoop::main().perform([weak] {
            const auto later = weak.lock();
            if (!later)
                return;
            later->isDue = false;
            if (later->widget)
                later->widget->update();
        });
    };
}

NSHostingController::~NSHostingController() = default;

QWidget* NSHostingController::loadView()
{
    state_->widget = new SplitWidget(state_->body);
    return state_->widget;
}
