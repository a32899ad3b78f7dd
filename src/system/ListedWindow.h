#pragma once

#include "base/Value.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>

/// What an entry of the window server's list must tell to be of any use.
struct ListedWindow {
    std::uint32_t number = 0;
    pid_t pid = 0;
    /// 0 is the layer of ordinary windows.
    std::int64_t layer = 0;

    /// Absent when one of the three is missing or no number.
    static std::optional<ListedWindow> read(const Value& entry);
};
