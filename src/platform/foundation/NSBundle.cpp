#include "foundation/NSBundle.h"

#include "host/Applications.h"
#include "host/Desktop.h"

NSBundle NSBundle::mainBundle()
{
    return NSBundle("com.merrowen.vantry");
}

std::optional<NSBundle> NSBundle::initWithURL(const NSURL& url)
{
    auto identifier = host::Desktop::current().applications().identifier(url.standardizedPath());
    if (!identifier)
        return std::nullopt;
    return NSBundle(std::move(identifier));
}
