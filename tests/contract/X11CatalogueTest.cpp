#include "contract/X11Fixture.h"

#include <algorithm>
#include <cstdlib>

TEST_F(X11, TheApplicationsFolderHoldsWhatMenusShowEachOnce)
{
    setenv("XDG_CURRENT_DESKTOP", "First:Second", 1);
    TestEntries entries;
    entries.write("t-plain", "Name=Test plain\nExec=a\n");
    entries.write("t-slash", "Name=Test a/b\\nc\nExec=a\n");
    entries.write("t-hidden", "Name=Test hidden\nExec=a\nNoDisplay=true\n");
    entries.write("t-deleted", "Name=Test deleted\nExec=a\nHidden=true\n");
    entries.write("t-mine", "Name=Test mine\nExec=a\nOnlyShowIn=Other;Second;\n");
    entries.write("t-others", "Name=Test others\nExec=a\nOnlyShowIn=Other;\n");
    entries.write("t-nowhere", "Name=Test nowhere\nExec=a\nOnlyShowIn=\n");
    entries.write("t-never", "Name=Test never\nExec=a\nNotShowIn=Second;\n");
    entries.write("t-there", "Name=Test there\nExec=a\nTryExec=sh\n");
    entries.write("t-missing", "Name=Test missing\nExec=a\nTryExec=/no/such/program\n");
    entries.write("t-same-1", "Name=Test same\nExec=one\nTryExec=/no/such/program\n");
    entries.write("t-same-2", "Name=Test same\nExec=two\n");
    entries.write("t-same-3", "Name=Test same\nExec=three\n");
    entries.write("t-same-4", "Name=Test same\nExec=two\n");

    const auto names = applications().bundles("/Applications");
    ASSERT_TRUE(names);
    auto found = *names;
    std::erase_if(found, [](const std::string& name) { return !name.starts_with("Test "); });
    std::ranges::sort(found);
    EXPECT_EQ(found,
        (std::vector<std::string> { "Test Files.app", "Test a-b c.app", "Test mine.app", "Test plain.app",
            "Test same (t-same-3).app", "Test same.app", "Test there.app" }));
    EXPECT_EQ(applications().identifier("/Applications/Test same.app"), "t-same-2");
    EXPECT_FALSE(applications().bundles("/Applications/Utilities"));
    unsetenv("XDG_CURRENT_DESKTOP");
}
