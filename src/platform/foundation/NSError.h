#pragma once

#include <string>

/// Why something failed.
struct NSError {
    /// For people.
    std::string localizedDescription;
};
