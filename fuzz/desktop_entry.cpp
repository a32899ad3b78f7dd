// Desktop entries.

#include "Input.h"

#include "freedesktop/DesktopEntry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const freedesktop::EntryReader reader { { "de_AT", "de" }, { "XFCE", "GNOME" } };
    freedesktop::parseDesktopEntry(Input::text(data, size), reader);
    return 0;
}
