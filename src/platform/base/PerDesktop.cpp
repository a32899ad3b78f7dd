#include "base/PerDesktop.h"

#include <vector>

namespace {

std::vector<void (*)()>& ends()
{
    static std::vector<void (*)()> ends;
    return ends;
}

}

void PerDesktop::atEnd(void (*end)())
{
    ends().push_back(end);
}

void PerDesktop::endAll()
{
    while (!ends().empty()) {
        const auto end = ends().back();
        ends().pop_back();
        end();
    }
}
