#include "ModelTest.h"

#include "model/Ordering.h"
#include "settings/Settings.h"

namespace {

class OrderingTest : public ModelTest { };

BarItem item(const std::string& name, const std::string& id, bool isLauncher = false)
{
    BarItem item;
    item.name = name;
    item.bundleID = id;
    item.isLauncher = isLauncher;
    return item;
}

}

TEST_F(OrderingTest, TheUsersOrderDecides)
{
    const std::vector items { item("beta", "b"), item("Apps", "launcher", true), item("Alpha", "a1"),
        item("gamma", "g"), item("Alpha", "a2") };
    const struct {
        AppOrder order;
        Settings::Strings manual;
        Texts ids;
    } cases[] {
        { AppOrder::dock, { "g" }, { "b", "launcher", "a1", "g", "a2" } },
        { AppOrder::alphabetical, { "g" }, { "launcher", "a1", "a2", "b", "g" } },
        { AppOrder::manual, {}, { "launcher", "a1", "a2", "b", "g" } },
        { AppOrder::manual, { "g", "a2", "absent", "g" }, { "launcher", "g", "a2", "a1", "b" } },
        // A window's key stands once for each of them: the first place counts.
        { AppOrder::manual, { "b", "a1", "g", "b" }, { "launcher", "b", "a1", "g", "a2" } },
    };
    for (const auto& test : cases) {
        Settings::appOrder.set(test.order);
        Settings::manualOrder.set(test.manual);
        Texts ids;
        for (const BarItem& ordered : DockModel::ordered(items))
            ids.push_back(*ordered.bundleID);
        EXPECT_EQ(ids, test.ids) << title(test.order);
    }
}
