#pragma once

#include "foundation/NSDate.h"

#include <string>

/// The internet date and time format of ISO 8601: "2026-03-01T09:30:00Z".
namespace NSISO8601DateFormatter {

/// In universal time.
std::string stringFromDate(NSDate date);

}
