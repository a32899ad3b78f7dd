#pragma once

#include <string>
#include <vector>

namespace freedesktop {

/// The user's folders, after the base directory rules of the desktop.
std::string homeFolder();
std::string configFolder();
/// The user's own folder of data.
std::string dataFolder();
/// One property-list file a preference domain.
std::string preferencesFolder();
/// Where a path of the platform lies: the Trash, the support folders and the login agents below HOME. Others come back
/// as they are.
std::string locate(const std::string& path);
/// The files that were thrown away.
std::string trashFolder();
/// The folders of data that programs install into, the user's own first.
std::vector<std::string> dataFolders();

}
