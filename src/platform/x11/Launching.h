#pragma once

#include <string>

/// Starting programs and handing things to what opens them. False where nothing could be started.
namespace x11::Launching {

bool launchEntry(const std::string& entryFile);
bool openWithHandler(const std::string& url);
/// The first of the known finders of applications that is installed.
bool launchApplicationFinder();
/// The id of the entry that opens things of a type; empty when there is none.
std::string handlerOf(const char* contentType);

}
