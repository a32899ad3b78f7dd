#include <iostream>

int main()
{
    std::cerr << "No matching processes belonging to you were found\n";
    return 1;
}
