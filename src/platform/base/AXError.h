#pragma once

/// Result codes of the accessibility interface.
enum AXError : int {
    kAXErrorSuccess = 0,
    kAXErrorIllegalArgument = -25201,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorCannotComplete = -25204,
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorActionUnsupported = -25206,
    kAXErrorNotImplemented = -25208,
    kAXErrorAPIDisabled = -25211,
    kAXErrorNoValue = -25212,
};
