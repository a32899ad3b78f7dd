#include "foundation/NSBundle.h"

#include "foundation/NSProcessInfo.h"
#include "host/Applications.h"
#include "host/Desktop.h"
#include "host/Processes.h"

NSBundle NSBundle::mainBundle()
{
    const auto own = host::Desktop::current().processes().find(NSProcessInfo::processIdentifier());
    return { "com.merrowen.vantry", NSURL::fileURLWithPath(own ? own->bundlePath.value_or("") : "") };
}

std::optional<NSBundle> NSBundle::initWithURL(const NSURL& url)
{
    auto identifier = host::Desktop::current().applications().identifier(url.standardizedPath());
    if (!identifier)
        return std::nullopt;
    return NSBundle(std::move(identifier), url);
}
