#pragma once

#include <string>
#include <vector>

namespace freedesktop {

/// The user's folders, after the base directory rules of the desktop.
std::string homeFolder();
std::string configFolder();
/// The user's own folder of data.
std::string dataFolder();
/// The files that were thrown away.
std::string trashFolder();
/// The folders of data that programs install into, the user's own first.
std::vector<std::string> dataFolders();

}
