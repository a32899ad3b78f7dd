#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

/// This process.
namespace NSProcessInfo {

/// A variable of the environment. Any thread.
std::optional<std::string> environment(const char* name);
pid_t processIdentifier();
uid_t userIdentifier();

}
