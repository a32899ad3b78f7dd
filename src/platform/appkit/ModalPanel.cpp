#include "appkit/ModalPanel.h"

#include "appkit/NSApplication.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "appkit/Pixels.h"
#include "appkit/ProgramIcon.h"
#include "base/RunLoop.h"
#include "host/Desktop.h"
#include "host/Surfaces.h"

#include <QDialog>
#include <QIcon>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace {

host::Surfaces& surfaces()
{
    return host::Desktop::current().surfaces();
}

/// In the middle of its owner, else a little above the middle of the main screen.
CGRect placeOf(const QDialog& dialog)
{
    const QSize size = dialog.sizeHint();
    const double scale = Pixels::scale();
    const CGSize points { size.width() / scale, size.height() / scale };
    const auto screen = NSScreen::mainScreen();
    const CGRect room = screen ? screen->visibleFrame() : CGRect {};
    const auto owned = dialog.parentWidget() ? surfaces().frame(*dialog.parentWidget()) : std::nullopt;
    const CGRect around = owned.value_or(room);
    const double rise = owned ? 0 : room.height / 6;
    return { std::round(around.midX() - points.width / 2), std::round(around.midY() - points.height / 2 + rise),
        points.width, points.height };
}

}

QWidget* ModalPanel::owner()
{
    const NSWindow* window = NSWindow::keyWindow();
    return window ? window->widget() : nullptr;
}

void ModalPanel::show(QDialog& dialog, std::function<void()> finished)
{
    const QPointer<QWidget> owner = dialog.parentWidget();
    dialog.setWindowIcon(programIcon());
    dialog.setWindowModality(Qt::WindowModal);
    // To a window on a stage that says nothing.
    if (owner && !owner->isWindow())
        owner->setEnabled(false);
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&dialog, owner, finished = std::move(finished)] {
        if (owner) {
            owner->setEnabled(true);
            surfaces().takeKeyboard(*owner);
        }
        surfaces().orderOut(dialog);
        RunLoop::main().perform([panel = QPointer(&dialog), finished] {
            if (panel)
                finished();
            if (!panel)
                return;
            surfaces().release(*panel);
            panel->deleteLater();
        });
    });
    dialog.ensurePolished();
    surfaces().adopt(dialog, { .role = host::SurfaceRole::window }, placeOf(dialog));
    bringForward(dialog);
}

void ModalPanel::bringForward(QDialog& dialog)
{
    surfaces().orderFront(dialog);
    surfaces().takeKeyboard(dialog);
}
