#include "foundation/NSURL.h"

#include <gtest/gtest.h>

namespace {

TEST(NSURLTest, TextsThatAreNoURLAreRefused)
{
    for (const char* text : { "", "file:///A b", "file:///a%2", "file:///a%zz", "file:///a<b>", "file:///\n", "é" })
        EXPECT_FALSE(NSURL::URLWithString(text)) << text;
}

TEST(NSURLTest, PathsComeFromURLsAndSurviveThem)
{
    const struct {
        const char* url;
        const char* path;
        const char* standardized;
    } cases[] = {
        { "file:///Applications/Mail.app/", "/Applications/Mail.app", "/Applications/Mail.app" },
        { "file://localhost/Applications/Mail.app", "/Applications/Mail.app", "/Applications/Mail.app" },
        { "file:///A%20b/%C3%A9.app", "/A b/é.app", "/A b/é.app" },
        { "file:///a/./b//c/../d", "/a/./b//c/../d", "/a/b/d" },
        { "file:///..", "/..", "/" },
        { "file:///", "/", "/" },
        { "/Applications/Mail.app", "/Applications/Mail.app", "/Applications/Mail.app" },
        { "x-settings:pane?query", "x-settings:pane", "/x-settings:pane" },
    };
    for (const auto& c : cases) {
        const auto url = NSURL::URLWithString(c.url);
        ASSERT_TRUE(url) << c.url;
        EXPECT_EQ(url->path(), c.path) << c.url;
        EXPECT_EQ(url->standardizedPath(), c.standardized) << c.url;
    }
    for (const char* path : { "/A b/%41 é#?.app", "/Applications/Mail.app", "/" })
        EXPECT_EQ(NSURL::fileURLWithPath(path).path(), path);
}

}
