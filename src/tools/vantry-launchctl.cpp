#include "freedesktop/Agents.h"

#include <iostream>

int main(int argc, char** argv)
{
    return freedesktop::Agents::launchctl({ argv + 1, argv + argc }, std::cout, std::cerr);
}
