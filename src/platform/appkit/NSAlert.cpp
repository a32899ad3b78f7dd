#include "appkit/NSAlert.h"

#include "appkit/ModalPanel.h"
#include "base/RunLoop.h"

#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace {

class AlertBox final : public QMessageBox {
public:
    AlertBox(NSAlert alert, QWidget* parent)
        : QMessageBox(parent)
        , alert_(std::move(alert))
    {
        setWindowTitle(QStringLiteral("Vantry"));
        setIcon(Question);
        setText(QString::fromStdString(alert_.messageText));
        setInformativeText(QString::fromStdString(alert_.informativeText));
        setTextFormat(Qt::PlainText);
        // The toolkit's name for the label of the text.
        if (auto* message = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
            QFont bold = message->font();
            bold.setBold(true);
            message->setFont(bold);
        }
        for (const std::string& title : alert_.buttons)
            choices_.push_back(addButton(QString::fromStdString(title), choices_.empty() ? AcceptRole : RejectRole));
        setDefaultButton(choices_.front());
        setEscapeButton(choices_.back());
    }

    const NSAlert& alert() const { return alert_; }
    void choose(std::size_t button) { choices_.at(button)->click(); }
    /// As closed, when nothing was clicked.
    int response() const
    {
        const auto clicked = std::find(choices_.begin(), choices_.end(), clickedButton());
        const auto index = clicked == choices_.end() ? std::ssize(choices_) - 1 : clicked - choices_.begin();
        return NSAlertFirstButtonReturn + static_cast<int>(index);
    }

private:
    NSAlert alert_;
    std::vector<QPushButton*> choices_;
};

/// The last one is the latest.
std::vector<QPointer<AlertBox>>& boxes()
{
    static std::vector<QPointer<AlertBox>> open;
    std::erase_if(open, [](const QPointer<AlertBox>& box) { return !box; });
    return open;
}

}

void NSAlert::begin(std::function<void(int response)> done) const
{
    const auto same = std::find_if(
        boxes().begin(), boxes().end(), [&](const QPointer<AlertBox>& box) { return box->alert() == *this; });
    if (same != boxes().end()) {
        ModalPanel::bringForward(**same);
        return;
    }
    auto* box = new AlertBox(*this, ModalPanel::owner());
    boxes().emplace_back(box);
    ModalPanel::show(*box, [box, done = std::move(done)] {
        const int response = box->response();
        std::erase(boxes(), box);
        done(response);
    });
}

std::optional<NSAlert> NSAlert::open()
{
    return boxes().empty() ? std::nullopt : std::optional(boxes().back()->alert());
}

void NSAlert::answer(std::size_t button)
{
    boxes().back()->choose(button);
}
