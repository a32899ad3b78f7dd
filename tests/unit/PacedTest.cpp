#include "Fixture.h"

#include "widgets/Paced.h"

#include <vector>

TEST_F(DesktopTest, OfManyChangesInASecondAtMostOneAFrameIsToldAndTheLastAlways)
{
    Paced<int> paced;
    std::vector<int> told;
    const auto set = [&](int value) { told.push_back(value); };
    for (int change = 1; change <= 200; ++change) {
        paced.tell(change, set);
        advance(0.005);
    }
    EXPECT_EQ(told.front(), 1) << "the first at once";
    EXPECT_LE(told.size(), 61u);
    EXPECT_GE(told.size(), 40u);
    advance(1);
    EXPECT_EQ(told.back(), 200);
    EXPECT_FALSE(paced.isWaiting());

    told.clear();
    paced.tell(1, set);
    paced.tell(2, set);
    paced.flush();
    advance(1);
    EXPECT_EQ(told, (std::vector { 1, 2 })) << "what is let go is told once";
}
