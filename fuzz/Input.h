#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What a target is tried with: bytes that may mean anything. Nothing may come of them but an answer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Input {

inline std::string_view text(const std::uint8_t* data, std::size_t size)
{
    return { reinterpret_cast<const char*>(data), size };
}

/// The lines of a text, one an argument.
inline std::vector<std::string> lines(std::string_view text)
{
    std::vector<std::string> all;
    while (!text.empty()) {
        const auto end = text.find('\n');
        all.emplace_back(text.substr(0, end));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return all;
}

}
