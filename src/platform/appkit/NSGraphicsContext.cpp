#include "appkit/NSGraphicsContext.h"

namespace {
NSGraphicsContext* currentContext = nullptr;
}

NSGraphicsContext* NSGraphicsContext::current()
{
    return currentContext;
}

NSGraphicsContext::Scope::Scope(NSGraphicsContext& context)
    : previous_(currentContext)
{
    currentContext = &context;
}

NSGraphicsContext::Scope::~Scope()
{
    currentContext = previous_;
}
