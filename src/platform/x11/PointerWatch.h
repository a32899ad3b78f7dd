#pragma once

#include "host/Pointer.h"
#include "x11/Monitors.h"

#include <optional>

namespace x11 {

/// The pointer, watched through XInput 2's raw events, which come whatever window it is over.
class PointerWatch final : public host::Pointer {
public:
    /// `drainSoon` has events handled that waiting for a reply may have left in the queue.
    PointerWatch(Connection& connection, const Monitors& monitors, std::function<void()> drainSoon);

    std::optional<CGPoint> location() override;
    bool watch(bool on) override;

    void handle(const xcb_generic_event_t& event);
    /// Where the pointer is: on the root, and over which child of it.
    struct Place {
        Point point;
        xcb_window_t over = XCB_WINDOW_NONE;
        bool isButtonDown = false;
    };
    /// Tells of the movement that the events so far amount to: once, and only where it is of concern.
    void report(const std::function<bool(const Place&)>& isOfConcern);

private:
    std::optional<Place> ask();
    bool hasXInput();
    void select(std::uint32_t events);

    Connection& connection_;
    const Monitors& monitors_;
    std::function<void()> drainSoon_;
    /// Absent until it was asked for.
    std::optional<std::uint8_t> opcode_;
    bool isWatching_ = false;
    bool hasMoved_ = false;
    /// While somebody is told of a movement: where to.
    std::optional<Point> reported_;
};

}
