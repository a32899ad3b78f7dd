#pragma once

#include "embedded/Later.h"
#include "embedded/Scenario.h"
#include "host/Applications.h"

namespace embedded {

class CallLog;
class Icons;
class World;

/// The installed applications as the program sees them, and its requests to open things. Main thread.
class Applications final : public host::Applications {
public:
    Applications(World& world, Icons& icons, CallLog& log)
        : world_(world)
        , icons_(icons)
        , log_(log)
    {
    }

    std::optional<std::string> identifier(const std::string& path) override;
    std::optional<std::string> displayName(const std::string& path) override;
    std::shared_ptr<const IconSource> icon(const std::string& path) override;

    /// Bundles are folders in the session's files.
    std::optional<std::vector<std::string>> bundles(const std::string&) override { return std::nullopt; }

    bool open(const std::string& path) override;
    bool openAnother(const std::string& path) override;
    /// Finder opens a window for a file or folder; a link is only recorded.
    bool openURL(const std::string& url) override;
    bool reveal(const std::string& url) override;

private:
    using Effect = void (*)(World&, const Scenario::Application&);
    bool request(const char* name, const std::string& path, Effect effect);
    void showInFinder(const std::string& name);

    World& world_;
    Icons& icons_;
    CallLog& log_;
    Later later_;
};

}
