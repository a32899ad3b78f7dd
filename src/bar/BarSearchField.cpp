#include "bar/BarSearchField.h"

#include "appkit/NSApplication.h"
#include "bar/BarWindow.h"

bool BarSearchField::becomeFirstResponder()
{
    if (auto* bar = dynamic_cast<BarWindow*>(window()))
        bar->wantsKey = true;
    NSApplication::activate();
    return NSTextField::becomeFirstResponder();
}
