#pragma once

#include "x11/Property.h"

#include <functional>
#include <utility>
#include <vector>

namespace x11 {

/// Questions to the server that are sent together and answered in one round trip.
class Burst {
public:
    explicit Burst(xcb_connection_t* connection)
        : connection_(connection)
    {
    }

    bool empty() const { return awaiting_.empty(); }

    void property(
        xcb_window_t window, xcb_atom_t name, std::uint32_t longs, std::function<void(const Property&)> answer)
    {
        const auto cookie = requestProperty(connection_, window, name, longs);
        awaiting_.push_back([this, cookie, answer = std::move(answer)] { answer(awaitProperty(connection_, cookie)); });
    }

    /// `await` is the library's function for the cookie's reply; the answer is null where the request failed.
    template <class Cookie, class Content, class Answer>
    void ask(Cookie cookie, Content* (*await)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Answer answer)
    {
        awaiting_.push_back([this, cookie, await, answer = std::move(answer)] {
            // The error is taken along and dropped, lest it come as an event.
            xcb_generic_error_t* error = nullptr;
            const Reply<Content> reply(await(connection_, cookie, &error));
            std::free(error);
            answer(reply.get());
        });
    }

    /// Waits for the answers and hands them on, in the order of the questions.
    void finish()
    {
        for (const auto& await : std::exchange(awaiting_, {}))
            await();
    }

private:
    xcb_connection_t* connection_;
    std::vector<std::function<void()>> awaiting_;
};

}
