#include "foundation/NSDate.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

NSDate NSDate::now()
{
    return { static_cast<double>(DispatchTime::now().uptimeNanoseconds) / 1e9, RunLoop::main().clock().wallSeconds() };
}

DispatchTime DispatchTime::now()
{
    return { RunLoop::main().clock().nanoseconds() };
}
