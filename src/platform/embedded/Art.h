#pragma once

#include <optional>
#include <string>

namespace embedded::Art {

/// A file of the art that is built in, such as "apps/mail.svg"; absent when there is none of that name.
std::optional<std::string> read(const std::string& name);

}
