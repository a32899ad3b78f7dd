#pragma once

#include <cstdlib>
#include <memory>

namespace x11 {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// What the server sent: a reply, an event or an error. Null where a request failed.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

}
