#include "ModelTest.h"

#include "appkit/NSAlert.h"
#include "appkit/NSMenu.h"
#include "appkit/NSStatusItem.h"
#include "controls/BarVisibility.h"
#include "controls/StatusItemController.h"
#include "settings/Settings.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

namespace {

class StatusItemTest : public ModelTest {
protected:
    void TearDown() override
    {
        controller_.reset();
        ModelTest::TearDown();
    }

    void launch() { controller_ = std::make_unique<StatusItemController>(BarVisibility::toggle); }
    void choose(std::size_t entry)
    {
        controller_->statusItem()->menu()->performActionForItem(entry);
        settle();
    }
    std::size_t itemCount() { return desktop().statusItems().all().size(); }
    const host::StatusItemFacts& facts() { return *desktop().statusItems().all().at(0); }

    std::unique_ptr<StatusItemController> controller_;
};

}

TEST_F(StatusItemTest, FollowsTheSettingAndHasAPlaceInTheMenuBar)
{
    Settings::showMenuBarIcon.set(false);
    launch();
    EXPECT_EQ(logged("status item"), Texts {});
    // At the top of 900 points, before the marks of two spaces.
    Texts lines;
    for (int time = 0; time < 2; ++time) {
        Settings::showMenuBarIcon.set(true);
        lines.push_back("status item shown at 1354,876");
        EXPECT_EQ(itemCount(), 1u);
        Settings::showMenuBarIcon.set(false);
        lines.push_back("status item hidden");
        EXPECT_EQ(itemCount(), 0u);
        EXPECT_EQ(logged("status item"), lines);
    }
    const auto window = openWindow(run("Editor"));
    world().setFullScreen(window, true);
    Settings::showMenuBarIcon.set(true);
    EXPECT_EQ(log_.back(), "status item shown at unplaced");
    world().setFullScreen(window, false);
    EXPECT_TRUE(controller_->statusItem()->buttonFrame());
    EXPECT_EQ(controller_->statusItem()->autosaveName(), "VantryStatusItem");
    EXPECT_EQ(facts().description, "Vantry");
}

TEST_F(StatusItemTest, TheMenuSaysWhatItWouldDoAndDoesIt)
{
    launch();
    const auto entries = [&](const std::string& first) {
        return Texts { first + "|Alt+Super+B|", "||",
            "Hide this menu bar icon||You can still show the taskbar with \u2325\u2318B", "||",
            "Quit Vantry|Super+Q|" };
    };
    const struct {
        const char* what;
        std::function<void()> change;
        const char* first;
    } rows[] {
        { "at launch", [] {}, "Hide Taskbar" },
        { "by the menu", [&] { choose(0); }, "Show Taskbar" },
        { "and back", [&] { choose(0); }, "Hide Taskbar" },
        { "by the keys", [] { BarVisibility::toggle(); }, "Show Taskbar" },
        { "by the panel's menu", [&] { facts().entries.front().choose(), settle(); }, "Hide Taskbar" },
    };
    for (const auto& row : rows) {
        row.change();
        Texts texts;
        for (const host::StatusEntry& entry : facts().entries)
            texts.push_back(entry.title + "|" + entry.keys + "|" + entry.toolTip);
        EXPECT_EQ(texts, entries(row.first)) << row.what;
        EXPECT_EQ(Settings::barVisible(), std::string(row.first) == "Hide Taskbar") << row.what;
    }
}

TEST_F(StatusItemTest, ToBeHiddenItAsksFirst)
{
    launch();
    const auto ask = [&](std::size_t button) {
        choose(2);
        const auto alert = NSAlert::open();
        ASSERT_TRUE(alert);
        EXPECT_EQ(alert->messageText, "Hide the menu bar icon?");
        EXPECT_EQ(alert->buttons, (Texts { "Hide Icon", "Cancel" }));
        NSAlert::answer(button);
        settle();
    };
    ask(1);
    EXPECT_TRUE(Settings::showMenuBarIcon());
    EXPECT_EQ(itemCount(), 1u);
    ask(0);
    EXPECT_FALSE(Settings::showMenuBarIcon());
    EXPECT_EQ(itemCount(), 0u);
}

TEST_F(StatusItemTest, APressOpensItsMenuWhichOutlivesItsReplacement)
{
    desktop().show();
    launch();
    QWidget* view = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets())
        view = top->windowTitle() == "Desktop" ? top : view;
    ASSERT_TRUE(view);
    const QColor bar = view->grab().toImage().pixelColor(1300, 12);
    EXPECT_NE(view->grab().toImage().pixelColor(1369, 15), bar) << "the filled third of the picture";
    QWidget* display = view->childAt(1369, 12);
    const auto press = [&](int x) { QTest::mouseClick(display, Qt::LeftButton, {}, { x, 12 }); };
    press(1340);
    EXPECT_FALSE(NSMenu::open()) << "beside it";
    press(1369);
    ASSERT_TRUE(NSMenu::open());
    Settings::barVisible.set(false);
    ASSERT_TRUE(NSMenu::open());
    QWidget* popup = QApplication::activePopupWidget();
    QTest::keyClick(popup, Qt::Key_B, Qt::MetaModifier);
    settle();
    EXPECT_FALSE(Settings::barVisible()) << "it needs both modifiers";
    QTest::keyClick(popup, Qt::Key_B, Qt::MetaModifier | Qt::AltModifier);
    settle();
    EXPECT_TRUE(Settings::barVisible());
    EXPECT_FALSE(NSMenu::open());
}
