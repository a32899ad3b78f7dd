#include "system/SpaceSwitcher.h"

#include "accessibility/AXUIElement.h"
#include "log/Log.h"

void SpaceSwitcher::ensureAccessibility()
{
    const bool trusted = AXIsProcessTrustedWithOptions(true);
    Log::debug("accessibility trusted=", trusted);
}
