#include "foundation/NSDate.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

NSDate NSDate::now()
{
    return NSDate(static_cast<double>(DispatchTime::now().uptimeNanoseconds) / 1e9);
}

DispatchTime DispatchTime::now()
{
    return { RunLoop::main().clock().nanoseconds() };
}
