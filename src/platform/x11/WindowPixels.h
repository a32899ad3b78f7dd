#pragma once

#include "x11/CaptureWorker.h"
#include "x11/Connection.h"
#include "x11/PictureScaler.h"

#include <xcb/damage.h>

#include <optional>
#include <string>
#include <vector>

namespace x11 {

/// Windows' own pixels, through the server's Composite extension. Under a compositing manager every window that is
/// mapped has a pixmap of its own to read. Without one a window is given such a pixmap for the moment: what was covered
/// is then drawn by its program, which is waited for, and nothing on the screen changes. The capture's thread.
class WindowPixels {
public:
    explicit WindowPixels(Connection& connection);

    /// Gives windows a pixmap that have none, and lets their programs draw what was covered.
    void prepare(const std::vector<CaptureJob>& jobs);
    /// A prepared window's picture.
    PixelsResult read(const CaptureJob& job);
    /// Takes back what `prepare` gave.
    void finish();

private:
    bool hasPixmap(xcb_window_t frame);
    bool isViewable(xcb_window_t frame);
    bool isCovered(xcb_window_t frame);
    void redirect(xcb_window_t frame);
    void awaitDrawing();
    bool takeDamage();

    Connection& connection_;
    PictureScaler scaler_;
    bool hasComposite_;
    /// The first event of the Damage extension; absent without it.
    std::optional<std::uint8_t> damageEvent_;
    std::vector<xcb_window_t> redirected_;
    /// Damage objects, of the windows whose programs are to draw.
    std::vector<xcb_damage_damage_t> watches_;
};

}
