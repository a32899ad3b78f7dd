#include "foundation/NSNotificationCenter.h"

#include <algorithm>

struct NSNotificationCenter::Observer {
    std::string name;
    Block block;
};

NSNotificationCenter::NSNotificationCenter() = default;
NSNotificationCenter::~NSNotificationCenter() = default;

NSNotificationCenter& NSNotificationCenter::defaultCenter()
{
    static NSNotificationCenter center;
    return center;
}

NSNotificationCenter::Token NSNotificationCenter::addObserver(std::string name, Block block)
{
    observers_.push_back(std::make_shared<Observer>(Observer { std::move(name), std::move(block) }));
    return observers_.back();
}

void NSNotificationCenter::removeObserver(const Token& token)
{
    const auto place = std::find(observers_.begin(), observers_.end(), token);
    if (place == observers_.end())
        return;
    (*place)->name.clear();
    observers_.erase(place);
}

void NSNotificationCenter::post(const NSNotification& notification)
{
    const auto told = observers_;
    for (const auto& observer : told)
        if (observer->name == notification.name)
            observer->block(notification);
}
