#include "model/Ordering.h"

#include "foundation/NSString.h"
#include "settings/Settings.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <unordered_map>

namespace {

bool nameComesFirst(const BarItem& a, const BarItem& b)
{
    return localizedCaseInsensitiveCompare(a.name, b.name) == NSComparisonResult::orderedAscending;
}

/// The user's order; what has no place in it follows by name.
class ManualOrder {
public:
    explicit ManualOrder(const std::vector<std::string>& keys)
    {
        for (std::size_t rank = 0; rank < keys.size(); ++rank)
            ranks_.try_emplace(keys[rank], rank);
    }

    bool operator()(const BarItem& a, const BarItem& b) const
    {
        const std::size_t rankA = rank(a);
        const std::size_t rankB = rank(b);
        return rankA == rankB ? nameComesFirst(a, b) : rankA < rankB;
    }

private:
    std::size_t rank(const BarItem& item) const
    {
        const auto place = ranks_.find(DockModel::key(item));
        return place == ranks_.end() ? std::numeric_limits<std::size_t>::max() : place->second;
    }

    std::unordered_map<std::string, std::size_t> ranks_;
};

}

std::vector<BarItem> DockModel::ordered(std::vector<BarItem> items)
{
    const AppOrder order = Settings::appOrder();
    if (order == AppOrder::dock)
        return items;

    const auto others = std::stable_partition(items.begin(), items.end(), std::mem_fn(&BarItem::isLauncher));
    if (order == AppOrder::alphabetical) {
        std::stable_sort(others, items.end(), nameComesFirst);
    } else {
        const ManualOrder comesFirst(Settings::manualOrder());
        std::stable_sort(others, items.end(), std::cref(comesFirst));
    }
    return items;
}
