// Badge signals of the session bus.

#include "Input.h"

#include "freedesktop/Badges.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = g_bytes_new(data, size);
    GVariant* parameters = g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE("(sa{sv})"), bytes, FALSE));
    freedesktop::BadgeUpdate::parse(parameters);
    g_variant_unref(parameters);
    g_bytes_unref(bytes);
    return 0;
}
