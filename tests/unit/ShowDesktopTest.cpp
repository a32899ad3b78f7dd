#include "ModelTest.h"

namespace {

using embedded::Refusal;

class ShowDesktopTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        world().hide(world().processNamed("com.apple.finder")->pid());
        settle();
    }

    /// As the bar, the menu and the key do it.
    void press()
    {
        ShowDesktop::forgetIfStale();
        ShowDesktop::toggle();
    }

    bool isHidden(pid_t pid) { return world().process(pid)->record->isHidden; }
    bool isMinimised(std::uint32_t window) { return world().window(window)->isMinimised; }
};

}

TEST_F(ShowDesktopTest, HidesRegularApplicationsAndBringsBackJustThose)
{
    const pid_t hidden = run("Hidden");
    world().hide(hidden);
    press();
    advance(1);
    EXPECT_FALSE(ShowDesktop::isShowingDesktop());
    EXPECT_TRUE(log_.empty()) << "nothing to clear";

    const pid_t mail = run("Mail");
    const pid_t chat = run("Chat");
    const pid_t agent = run("Agent", host::ActivationPolicy::accessory);
    press();
    EXPECT_TRUE(ShowDesktop::isShowingDesktop());
    advance(1);
    EXPECT_TRUE(isHidden(mail) && isHidden(chat) && isHidden(hidden));
    EXPECT_FALSE(isHidden(agent));
    EXPECT_EQ(log_, Texts { "show desktop: hid 2 of 2, minimised 0 windows" });

    world().quit(chat);
    press();
    settle();
    EXPECT_FALSE(ShowDesktop::isShowingDesktop());
    EXPECT_FALSE(isHidden(mail));
    EXPECT_TRUE(isHidden(hidden));
    EXPECT_EQ(log_.back(), "show desktop: restoring 1 apps and 0 windows");
}

TEST_F(ShowDesktopTest, WhoRefusesIsAskedTwiceThenHasItsWindowsMinimised)
{
    const pid_t slow = run("Slow");
    const auto slowWindow = openWindow(slow);
    world().processFaults(slow).refusesToHide = Refusal::once;
    const pid_t stubborn = run("Stubborn");
    const auto window = openWindow(stubborn);
    const auto minimisedBefore = openWindow(stubborn);
    const auto failing = openWindow(stubborn);
    world().setMinimised(minimisedBefore, true);
    world().windowFaults(failing).fails["AXMinimized"] = -1;
    world().processFaults(stubborn).refusesToHide = Refusal::always;
    const pid_t mute = run("Mute");
    world().processFaults(mute).refusesToHide = Refusal::always;
    world().processFaults(mute).hangs = true;

    press();
    advance(0.29);
    EXPECT_EQ(count("hide", slow), 1u);
    advance(0.02);
    EXPECT_TRUE(isHidden(slow));
    EXPECT_FALSE(isMinimised(window));
    advance(0.3);
    EXPECT_TRUE(isMinimised(window));
    EXPECT_FALSE(isMinimised(slowWindow));
    EXPECT_EQ(count("hide", slow), 2u);
    EXPECT_EQ(calls().named("AXWindows", mute).at(0).heldUp, 0.35);
    EXPECT_EQ(log_,
        (Texts { "show desktop: Stubborn would not hide, minimised its windows",
            "show desktop: hid 1 of 3, minimised 1 windows" }));

    world().close(failing);
    press();
    settle();
    EXPECT_FALSE(isHidden(slow));
    EXPECT_FALSE(isMinimised(window));
    EXPECT_TRUE(isMinimised(minimisedBefore));
    EXPECT_EQ(log_.back(), "show desktop: restoring 1 apps and 1 windows");

    world().quit(slow);
    world().quit(mute);
    for (int presses = 0; presses < 2; ++presses) {
        press();
        advance(1);
        EXPECT_TRUE(isMinimised(window)) << "where everyone refuses, the next press clears again";
        EXPECT_EQ(ShowDesktop::isShowingDesktop(), presses == 0);
    }
    EXPECT_EQ(log_.back(), "show desktop: hid 0 of 1, minimised 0 windows");
}

TEST_F(ShowDesktopTest, WhatTheUserBroughtBackIsForgotten)
{
    const pid_t mail = run("Mail");
    const pid_t chat = run("Chat");
    press();
    advance(1);
    world().unhide(mail);
    press();
    EXPECT_EQ(log_.back(), "show desktop: restoring 1 apps and 0 windows");
    settle();

    press();
    advance(1);
    world().unhide(mail);
    world().unhide(chat);
    settle();
    press();
    advance(1);
    EXPECT_TRUE(isHidden(mail) && isHidden(chat)) << "everything was back, so the screen is cleared again";
    EXPECT_EQ(log_.back(), "show desktop: hid 2 of 2, minimised 0 windows");
}

TEST_F(ShowDesktopTest, APressWhileItIsClearingRestoresAndTheStepsThatAreQueuedRunAllTheSame)
{
    const pid_t mail = run("Mail");
    press();
    advance(0.1);
    ASSERT_TRUE(isHidden(mail));
    press();
    settle();
    EXPECT_FALSE(isHidden(mail));
    EXPECT_FALSE(ShowDesktop::isShowingDesktop());
    advance(1);
    EXPECT_TRUE(isHidden(mail));
    EXPECT_TRUE(ShowDesktop::isShowingDesktop());
    EXPECT_EQ(count("hide", mail), 2u);
}
