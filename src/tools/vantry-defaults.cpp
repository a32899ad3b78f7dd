#include "freedesktop/UserFolders.h"
#include "tools/Defaults.h"

#include <iostream>

int main(int argc, char** argv)
{
    return Defaults::run(freedesktop::preferencesFolder(), { argv + 1, argv + argc }, std::cout, std::cerr);
}
