#include "dock/RepairTexts.h"

#include <string_view>

namespace {

constexpr std::string_view scriptText = R"sh(#!/bin/bash
# Installed by Vantry. Restores the macOS Dock if the app did not shut
# down cleanly. Safe to delete along with ~/Library/Application Support/Vantry.
set -e

FLAG="SUPPORT/dock-dirty.flag"
BACKUP="SUPPORT/dock-backup.plist"

[ -f "$FLAG" ] || exit 0

if [ -f "$BACKUP" ]; then
    /usr/bin/defaults import com.apple.dock "$BACKUP"
else
    /usr/bin/defaults write com.apple.dock tilesize -int 48
fi

# Trackpad gesture, in both domains.
for domain in com.apple.AppleMultitouchTrackpad com.apple.driver.AppleBluetoothMultitouch.trackpad; do
    /usr/bin/defaults write "$domain" TrackpadThreeFingerVertSwipeGesture -int 2
    /usr/bin/defaults write "$domain" TrackpadFourFingerVertSwipeGesture -int 2
done

/usr/bin/killall Dock 2>/dev/null || true
rm -f "$FLAG")sh";

constexpr std::string_view agentText = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>Label</key>
    <string>LABEL</string>
    <key>ProgramArguments</key>
    <array>
        <string>/bin/bash</string>
        <string>SUPPORT/repair.sh</string>
    </array>
    <key>RunAtLoad</key>
    <true/>
</dict>
</plist>)xml";

std::string filledIn(std::string_view text, std::string_view word, std::string_view value)
{
    std::string result;
    for (auto place = text.find(word); place != text.npos; place = text.find(word)) {
        result.append(text.substr(0, place)).append(value);
        text.remove_prefix(place + word.size());
    }
    return result.append(text);
}

}

std::string RepairTexts::script(const std::string& support)
{
    return filledIn(scriptText, "SUPPORT", support);
}

std::string RepairTexts::agent(const std::string& label, const std::string& support)
{
    return filledIn(filledIn(agentText, "LABEL", label), "SUPPORT", support);
}
