#include "ModelTest.h"

#include "controls/Trash.h"
#include "foundation/NSFileManager.h"

#include <fstream>

namespace {

class TrashTest : public ModelTest {
protected:
    static std::filesystem::path folder() { return NSHomeDirectory() + "/.Trash"; }
    static void throwAway(const std::string& name) { std::ofstream(folder() / name) << name; }
};

}

TEST_F(TrashTest, HoldsWhatCanBeSeen)
{
    EXPECT_TRUE(Trash::isEmpty());
    throwAway(".settings");
    EXPECT_TRUE(Trash::isEmpty());
    throwAway("letter.txt");
    EXPECT_FALSE(Trash::isEmpty());
    std::filesystem::remove_all(folder());
    EXPECT_TRUE(Trash::isEmpty());
}
