#include "services/SMAppService.h"

#include "host/Desktop.h"
#include "host/LoginItem.h"

namespace {

std::optional<NSError> errorOf(std::string reason)
{
    return reason.empty() ? std::nullopt : std::optional(NSError { std::move(reason) });
}

}

SMAppServiceStatus SMAppService::status() const
{
    return static_cast<SMAppServiceStatus>(host::Desktop::current().loginItem().status());
}

std::optional<NSError> SMAppService::registerAndReturnError()
{
    return errorOf(host::Desktop::current().loginItem().registerItem());
}

std::optional<NSError> SMAppService::unregisterAndReturnError()
{
    return errorOf(host::Desktop::current().loginItem().unregisterItem());
}
