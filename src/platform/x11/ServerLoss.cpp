#include "x11/ServerLoss.h"

#include "x11/ToolkitConnection.h"

#include <QtGlobal>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace x11 {
namespace {

ServerLoss* current = nullptr;
QtMessageHandler before = nullptr;

}

ServerLoss::ServerLoss(const Connection& connection, std::function<void()> onLost)
    : connection_(connection)
    , onLost_(std::move(onLost))
{
    // Its last word comes while all that the process has made is still there. Where it is told to be silent, what it
    // has made since has gone by the time that the process ends.
    static const int registered = std::atexit(processEnds);
    std::ignore = registered;
    before = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& message) {
        before(type, context, message);
        processEnds();
    });
    current = this;
}

ServerLoss::~ServerLoss()
{
    qInstallMessageHandler(before);
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
    std::exchange(current, nullptr)->onLost_();
    std::fflush(nullptr);
    _exit(EXIT_SUCCESS);
}

}
