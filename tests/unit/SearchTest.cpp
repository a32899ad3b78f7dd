#include "ModelTest.h"

#include "search/AppCatalog.h"
#include "search/Search.h"

#include <filesystem>

namespace {

/// Applications in the folders of an embedded session. Paths below its root, "Home" being the user's.
class SearchTest : public ModelTest {
protected:
    void put(const Texts& paths)
    {
        for (const std::string& each : paths)
            std::filesystem::create_directories(root() / each);
    }

    void putApplications(const Texts& names)
    {
        for (const std::string& name : names)
            put({ "Applications/" + name + ".app" });
    }

    static Texts namesOf(const std::vector<AppEntry>& entries)
    {
        Texts names;
        std::ranges::transform(entries, std::back_inserter(names), &AppEntry::name);
        return names;
    }

    static Texts titles(const std::vector<SearchHit>& hits)
    {
        Texts titles;
        for (const SearchHit& hit : hits)
            titles.push_back(hit.title + " - " + hit.subtitle);
        return titles;
    }
};

}

TEST_F(SearchTest, TheCatalogueIsTheSortedBundlesOfTheFolders)
{
    put({ "Applications/notes.app", "Applications/Mail.app", "Applications/Utilities/Console.app",
        "Applications/Deeper/Hidden.app", "Applications/Old.app.bak", "Applications/SHOUT.APP", "Applications/plain",
        "System/Library/CoreServices/Zip.app", "Home/Applications/Mail.app", "Home/Applications/Éclair.app",
        "Home/Applications/Chrome Apps.localized/Web.app" });
    EXPECT_EQ(namesOf(AppCatalog::all()), (Texts { "Console", "Éclair", "Mail", "Mail", "notes", "Web", "Zip" }));
    EXPECT_EQ(AppCatalog::all()[2].url.path(), "/Applications/Mail.app");
    EXPECT_EQ(AppCatalog::all()[3].url.path(), (root() / "Home/Applications/Mail.app").string());
    EXPECT_EQ(logged("catalog: "), (Texts { "catalog: 7 apps" }));

    putApplications({ "Late" });
    EXPECT_EQ(AppCatalog::all().size(), 7u) << "listed once for the life of the process";
}

TEST_F(SearchTest, AMatchAtTheStartOutranksOneWithin)
{
    putApplications({ "Ant Mail", "Mail", "MAILBOX", "Chat", "Почта" });
    EXPECT_TRUE(AppCatalog::search("  \t ").empty() && Search::hits("").empty());
    EXPECT_TRUE(logged("catalog: ").empty()) << "blanks ask nobody";
    const struct {
        const char* query;
        std::size_t limit;
        Texts found;
    } rows[] {
        { "mail", 8, { "Mail", "MAILBOX", "Ant Mail" } },
        { " \t MAIL\xC2\xA0", 8, { "Mail", "MAILBOX", "Ant Mail" } },
        { "mail", 2, { "Mail", "MAILBOX" } },
        { "a", 2, { "Ant Mail", "Chat" } },
        { "a", 0, {} },
        { "mail\n", 8, {} },
        { "ПОЧ", 8, { "Почта" } },
        { "\xFF\xFE", 8, {} },
        { "none", 8, {} },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.query);
        EXPECT_EQ(namesOf(AppCatalog::search(row.query, row.limit)), row.found);
    }
    EXPECT_TRUE(AppCatalog::search(std::string(10'000, 'a')).empty());
}

TEST_F(SearchTest, WindowsComeBeforeApplications)
{
    putApplications({ "Mail", "Chat" });
    const pid_t mail = run("Mail");
    const pid_t chat = run("Chat");
    const auto sized = CGRect { 0, 0, 800, 600 };
    openWindow(mail, sized, " About MAIL");
    openWindow(mail, sized, "");
    openWindow(chat, sized, "Mail for you");
    openWindow(chat, { 0, 0, 100, 100 }, "Mail, too small to count");
    WindowIndex::invalidate();

    EXPECT_EQ(
        titles(Search::hits("mail ")), (Texts { " About MAIL - Mail", "Mail for you - Chat", "Mail - Application" }));
    EXPECT_EQ(titles(Search::hits("mail", 2)), (Texts { " About MAIL - Mail", "Mail for you - Chat" }));
    EXPECT_EQ(titles(Search::hits("chat")), (Texts { "Chat - Application" })) << "an untitled window never matches";
    EXPECT_TRUE(Search::hits("mail", 0).empty());

    world().quit(mail);
    EXPECT_EQ(titles(Search::hits("mail")), (Texts { "Mail for you - Chat", "Mail - Application" }))
        << "the index still lists the window of a process that has gone";
}

TEST_F(SearchTest, AHitDoesWhatItIsFor)
{
    putApplications({ "Mail" });
    install("Mail");
    const pid_t chat = run("Chat");
    const std::uint32_t window = openWindow(chat, { 0, 0, 800, 600 }, "Mail for you");
    world().setMinimised(window, true);
    WindowIndex::invalidate();
    const auto hits = Search::hits("mail");
    ASSERT_EQ(hits.size(), 2u);

    hits[0].activate();
    settle();
    EXPECT_FALSE(world().window(window)->isMinimised);
    hits[1].activate();
    settle();
    EXPECT_EQ(logged("launcher: "), (Texts { "launcher: opening Mail" }));
    EXPECT_TRUE(world().processNamed("org.Mail"));

    world().close(window);
    hits[0].activate();
    std::filesystem::remove_all(root() / "Applications");
    hits[1].activate();
    settle();
}
