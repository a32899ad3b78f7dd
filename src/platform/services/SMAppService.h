#pragma once

#include "foundation/NSError.h"

#include <optional>

enum class SMAppServiceStatus { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

/// What the system starts on the program's behalf. Main thread.
class SMAppService {
public:
    /// The program itself, at login.
    static SMAppService mainAppService() { return {}; }

    SMAppServiceStatus status() const;
    /// Absent on success.
    std::optional<NSError> registerAndReturnError();
    /// Absent on success; that it isn't registered is a failure.
    std::optional<NSError> unregisterAndReturnError();
};
