#pragma once

#include "embedded/Accessibility.h"
#include "embedded/Applications.h"
#include "embedded/Badges.h"
#include "embedded/CallLog.h"
#include "embedded/Capture.h"
#include "embedded/Displays.h"
#include "embedded/Icons.h"
#include "embedded/Keyboard.h"
#include "embedded/LoginItem.h"
#include "embedded/Notices.h"
#include "embedded/Pointer.h"
#include "embedded/Processes.h"
#include "embedded/Session.h"
#include "embedded/SessionLock.h"
#include "embedded/StatusItems.h"
#include "embedded/Surfaces.h"
#include "embedded/Tools.h"
#include "embedded/Windows.h"
#include "embedded/World.h"
#include "host/Desktop.h"

#include <memory>
#include <optional>
#include <string>

namespace embedded {

class View;

/// A whole small desktop in the process, on the run loop's clock. A scenario says how it starts; its world is what
/// users and other programs do on it; its parts are what the program sees of it. Main thread.
class EmbeddedDesktop final : public host::Desktop {
public:
    /// `root` is the folder of its session's files, which may exist.
    EmbeddedDesktop(const Scenario& scenario, const std::string& root);
    ~EmbeddedDesktop() override;

    Displays& displays() override { return displays_; }
    Processes& processes() override { return processes_; }
    Applications& applications() override { return applications_; }
    Windows& windows() override { return windows_; }
    Badges& badges() override { return badges_; }
    Accessibility& accessibility() override { return accessibility_; }
    Pointer& pointer() override { return pointer_; }
    Keyboard& keyboard() override { return keyboard_; }
    Surfaces& surfaces() override { return surfaces_; }
    Capture& capture() override { return capture_; }
    Session& session() override { return session_; }
    Tools& tools() override { return tools_; }
    LoginItem& loginItem() override { return loginItem_; }
    StatusItems& statusItems() override { return statusItems_; }

    World& world() { return world_; }
    CallLog& calls() { return calls_; }

    /// Has the session's folder for this process alone. Another that has it already is seen as a running instance of
    /// this program.
    void claimSession();
    /// Puts the desktop on the toolkit's screen, to be looked at and used.
    void show();
    /// Paints the displays as they lie, with everything on them, into a picture file; shows them if they weren't shown.
    /// False when it can't be written.
    bool savePicture(const std::string& path);

private:
    Icons icons_;
    Notices notices_;
    CallLog calls_;
    Session session_;
    std::optional<SessionLock> lock_;
    World world_;
    Displays displays_;
    Processes processes_;
    Applications applications_;
    Windows windows_;
    Badges badges_;
    Accessibility accessibility_;
    Pointer pointer_;
    Keyboard keyboard_;
    Surfaces surfaces_;
    Capture capture_;
    Tools tools_;
    LoginItem loginItem_ { world_ };
    StatusItems statusItems_ { world_.screens(), notices_ };
    std::unique_ptr<View> view_;
};

}
