#include "ModelTest.h"

#include "appkit/NSWorkspace.h"
#include "foundation/NSProcessInfo.h"
#include "model/AppHistory.h"

namespace {

class AppHistoryTest : public ModelTest {
protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        NSWorkspace::sharedWorkspace().followDesktop();
        a_ = run("A");
        b_ = run("B");
    }

    void activate(pid_t pid)
    {
        world().activate(pid);
        settle();
    }

    pid_t a_ = 0;
    pid_t b_ = 0;
};

}

TEST_F(AppHistoryTest, RemembersTheApplicationBeforeThisOneAndNeverTheProgram)
{
    activate(a_);
    AppHistory::start();
    EXPECT_FALSE(AppHistory::previous());
    activate(b_);
    EXPECT_EQ(AppHistory::previous(), a_);
    activate(NSProcessInfo::processIdentifier());
    activate(b_);
    EXPECT_EQ(AppHistory::previous(), a_);
    activate(NSProcessInfo::processIdentifier());
    activate(a_);
    EXPECT_EQ(AppHistory::previous(), b_);
    EXPECT_EQ(logged("history: "),
        (Texts { "history: current=B previous=" + std::to_string(a_),
            "history: current=A previous=" + std::to_string(b_) }));
}

TEST_F(AppHistoryTest, WhereNothingIsInFrontTheFirstActivationHasNothingBeforeIt)
{
    world().quit(world().processNamed("com.apple.finder")->pid());
    settle();
    ASSERT_FALSE(world().frontmost());
    AppHistory::start();
    activate(a_);
    EXPECT_FALSE(AppHistory::previous());
    EXPECT_EQ(logged("history: "), Texts { "history: current=A previous=-" });
}
