#pragma once

#include "freedesktop/LaunchNotifier.h"

#include <string>

/// Starting programs and handing things to what opens them. False where nothing could be started, which is also told on
/// standard error.
namespace freedesktop::Launching {

bool launchEntry(const std::string& entryFile, LaunchNotifier& notifier);
/// The entry's own way to open a new window where it names one, else the same as `launchEntry`.
bool launchNewWindow(const std::string& entryFile, LaunchNotifier& notifier);
bool openWithHandler(const std::string& url, LaunchNotifier& notifier);
/// The same, where failing is nothing to tell.
bool tryHandler(const std::string& url, LaunchNotifier& notifier);
/// Through the file manager that answers for the session, else the folder in what opens folders.
bool reveal(const std::string& fileUrl, LaunchNotifier& notifier);
/// The first of the known finders of applications that is installed.
bool launchApplicationFinder(LaunchNotifier& notifier);
/// The id of the entry that opens things of a type; empty when there is none.
std::string handlerOf(const char* contentType);

}
