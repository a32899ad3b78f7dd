#pragma once

#include "x11/Connection.h"

#include <functional>

namespace x11 {

/// The toolkit ends the process by itself, with status 1, once it sees that its connection to the server is broken.
/// While one of these lives the process's owner is told before that, and the status is 0. One at a time; main thread.
class ServerLoss {
public:
    ServerLoss(const Connection& connection, std::function<void()> onLost);
    ~ServerLoss();
    ServerLoss(const ServerLoss&) = delete;
    ServerLoss& operator=(const ServerLoss&) = delete;

private:
    static void processEnds();
    bool isLost() const;

    const Connection& connection_;
    std::function<void()> onLost_;
};

}
