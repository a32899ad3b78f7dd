#include "x11/ServerLoss.h"

#include "x11/ToolkitConnection.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace x11 {
namespace {

ServerLoss* current = nullptr;

}

ServerLoss::ServerLoss(const Connection& connection, std::function<void()> onLost)
    : connection_(connection)
    , onLost_(std::move(onLost))
{
    // What is registered last is called first, while all that the process has made is still there.
    static const int registered = std::atexit(processEnds);
    std::ignore = registered;
    current = this;
}

ServerLoss::~ServerLoss()
{
    current = nullptr;
}

bool ServerLoss::isLost() const
{
    xcb_connection_t* toolkits = toolkitConnection();
    return connection_.isLost() || (toolkits && xcb_connection_has_error(toolkits));
}

void ServerLoss::processEnds()
{
    if (!current || !current->isLost())
        return;
    current->onLost_();
    std::fflush(nullptr);
    _exit(EXIT_SUCCESS);
}

}
