#pragma once

#include <functional>

class QDialog;
class QWidget;

/// A dialog of the toolkit as a window of the program: an alert, a choice of colour. It returns at once and stops
/// nothing but the window that it belongs to. For the layer's own use. Main thread.
namespace ModalPanel {

/// The program's ordinary window that the user works in: what a dialog made now belongs to. Null when there is none.
QWidget* owner();

/// Shows the dialog in front, with the keyboard. `finished` is called, in a turn of its own, when it has gone; then the
/// dialog is deleted.
void show(QDialog& dialog, std::function<void()> finished);
void bringForward(QDialog& dialog);

}
