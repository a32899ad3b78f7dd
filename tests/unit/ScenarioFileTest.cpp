#include "unit/Fixture.h"

#include "embedded/ScenarioFile.h"

#include <fstream>

using namespace embedded;

namespace {

/// A sound scenario of eleven lines, to be damaged.
const std::string sound = R"({
  "displays": [{ "number": 1, "uuid": "A", "frame": [0, 0, 800, 600], "spaces": [{ "id": 1 }] }],
  "applications": [{ "path": "/Applications/Mail.app", "identifier": "org.example.mail" }],
  "processes": [
    { "pid": 100, "application": "/Applications/Mail.app" }
  ],
  "windows": [
    { "number": 7, "owner": 100, "title": "Inbox", "spaces": [1] }
  ],
  "frontmost": 100
})";

struct Damage {
    std::string from;
    std::string to;
    std::string error;
};

void PrintTo(const Damage& damage, std::ostream* stream)
{
    *stream << damage.from << " -> " << damage.to;
}

class ScenarioErrors : public testing::TestWithParam<Damage> { };

TEST_P(ScenarioErrors, SayWhereAndWhy)
{
    std::string text = sound;
    const auto place = text.find(GetParam().from);
    ASSERT_NE(place, std::string::npos);
    text.replace(place, GetParam().from.size(), GetParam().to);

    const auto result = parseScenario(text);

    ASSERT_TRUE(std::holds_alternative<ScenarioError>(result));
    EXPECT_EQ(std::get<ScenarioError>(result).text(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Each, ScenarioErrors,
    testing::Values(
        Damage { R"("owner": 100)", R"("owner": 99)", "line 8: window 7: owner 99 is no process of this scenario" },
        Damage { R"("spaces": [1])", R"("spaces": [1, 3])", "line 8: window 7: space 3 is no space of this scenario" },
        Damage { R"("title": "Inbox")", R"("tilte": "Inbox")", "line 8: window 7: \"tilte\" is no key of this" },
        Damage { R"("title": "Inbox")", R"("title": 5)", "line 8: window 7: \"title\" must be text" },
        Damage { R"("title": "Inbox")", "\"layer\":\n 0.5", "line 9: window 7: \"layer\" must be a whole number" },
        Damage { R"("number": 7)", R"("number": -7)",
            "line 8: window at index 0: \"number\" must be a smaller whole number, or none below 0" },
        Damage { R"(, "title": "Inbox")", R"(, "faults": { "fails": { "AXRaise": "x" } })",
            "line 8: window 7: faults: \"fails/AXRaise\" must be a whole number" },
        Damage {
            R"([1] })", R"([1] }, { "number": 7, "owner": 100 })", "line 8: window 7: this \"number\" is given twice" },
        Damage { R"({ "pid": 100, )", R"({ )", "line 5: process at index 0: \"pid\" is missing" },
        Damage { R"("application": "/Applications/Mail.app")", R"("application": "/Applications/Male.app")",
            "line 5: process 100: \"/Applications/Male.app\" is no application of this scenario" },
        Damage { R"("application": "/Applications/Mail.app")", R"("policy": "shy")",
            "line 5: process 100: \"policy\" can't be \"shy\"" },
        Damage { R"([{ "id": 1 }])", R"([{ "id": 1 }, { "id": 1 }])",
            "line 2: display at index 0: space at index 1: space 1 is given twice" },
        Damage { R"([{ "id": 1 }])", R"([{ "id": 1, "type": 4, "pid": 5 }])",
            "line 2: display at index 0: space at index 0: pid 5 is no process of this scenario" },
        Damage { R"([{ "id": 1 }])", R"([{ "id": 1 }], "currentSpace": 2)",
            "line 2: display at index 0: space 2 is no space of this display" },
        Damage { "[0, 0, 800, 600]", "[0, 0, 800]",
            "line 2: display at index 0: \"frame\" must be an array of x, y, width and height" },
        Damage { "[0, 0, 800, 600]", "[9, 0, 800, 600]", "line 2: the first display must begin at 0, 0" },
        Damage {
            R"("frontmost": 100)", R"("frontmost": 101)", "line 10: frontmost 101 is no process of this scenario" },
        Damage { R"("frontmost": 100)", R"("accentColour": "blue")",
            "line 10: \"accentColour\" must be of the form \"#RRGGBB\"" },
        Damage { R"("frontmost": 100)", R"("windows": [])", "line 10: \"windows\" is given twice" },
        Damage { R"("frontmost": 100)", R"("frontmost" 100)", "line 10: no sound JSON: missing name separator" },
        Damage { sound, "[]", "line 1: a scenario is an object" }));

TEST(ScenarioFile, GivesAProcessWhatItsApplicationHasUnlessItIsTakenAway)
{
    std::string text = sound;
    text.replace(text.find(R"("pid": 100)"), 10, R"("name": null, "pid": 100)");

    const auto scenario = std::get<Scenario>(parseScenario(text));

    EXPECT_EQ(scenario.processes.at(0).bundleIdentifier, "org.example.mail");
    EXPECT_EQ(scenario.processes.at(0).bundlePath, "/Applications/Mail.app");
    EXPECT_EQ(scenario.processes.at(0).name, std::nullopt);
}

TEST(ScenarioFile, CarriesFaultsAndDamagedEntriesOver)
{
    std::string text = sound;
    text.replace(text.find(R"("frontmost")"), 0,
        R"("faults": { "windowListEntries": [5, { "kCGWindowNumber": "x" }], "fullScreenDelay": 0.7 },)");
    text.replace(text.find(R"("pid": 100)"), 0, R"("faults": { "refusesToHide": "once", "fails": { "AXRaise": 2 } },)");

    const auto scenario = std::get<Scenario>(parseScenario(text));

    EXPECT_EQ(scenario.faults.windowListEntries,
        (std::vector<Value> { 5, Value::Dictionary { { "kCGWindowNumber", "x" } } }));
    EXPECT_EQ(scenario.faults.fullScreenDelay, 0.7);
    EXPECT_EQ(scenario.processes.at(0).faults.refusesToHide, Refusal::once);
    EXPECT_EQ(scenario.processes.at(0).faults.fails.at("AXRaise"), 2);
}

/// The scenario that is built in, and what a person meets on it.
TEST_F(DesktopTest, TheDefaultScenarioIsAWorkingDay)
{
    desk.scenario() = defaultScenario();
    start();

    std::size_t windows = 0;
    for (const auto& process : world().processes()) {
        windows += world().windowsOf(process.pid()).size();
        const bool isRegular = process.record->policy == host::ActivationPolicy::regular;
        EXPECT_TRUE(!isRegular || process.record->icon) << process.record->localizedName.value_or("?");
    }
    EXPECT_EQ(windows, 10u);
    EXPECT_EQ(world().dock().tiles().front().label, "Apps");
    EXPECT_EQ(world().processNamed("org.example.browser")->pid(), world().frontmost());
    for (const auto& tile : world().dock().tiles())
        EXPECT_TRUE(
            desktop().applications().identifier("/Applications/" + tile.label + ".app") || tile.label == "Apps");
}

}
