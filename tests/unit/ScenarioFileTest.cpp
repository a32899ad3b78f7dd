#include "embedded/ScenarioFile.h"

#include <gtest/gtest.h>

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

TEST(ScenarioFile, AnErrorSaysWhereAndWhy)
{
    const struct {
        std::string from;
        std::string to;
        std::string error;
    } cases[] {
        { R"("owner": 100)", R"("owner": 99)", "line 8: window 7: owner 99 is no process of this scenario" },
        { R"("title": "Inbox")", R"("tilte": "Inbox")", "line 8: window 7: \"tilte\" is no key of this" },
        { R"("title": "Inbox")", "\"layer\":\n 0.5", "line 9: window 7: \"layer\" must be a whole number" },
        { R"("number": 7)", R"("number": -7)",
            "line 8: window at index 0: \"number\" must be a smaller whole number, or none below 0" },
        { R"(, "title": "Inbox")", R"(, "faults": { "fails": { "AXRaise": "x" } })",
            "line 8: window 7: faults: \"fails/AXRaise\" must be a whole number" },
        { R"([1] })", R"([1] }, { "number": 7, "owner": 100 })", "line 8: window 7: this \"number\" is given twice" },
        { R"({ "pid": 100, )", R"({ )", "line 5: process at index 0: \"pid\" is missing" },
        { R"("application": "/Applications/Mail.app")", R"("policy": "shy")",
            "line 5: process 100: \"policy\" can't be \"shy\"" },
        { "[0, 0, 800, 600]", "[0, 0, 800]",
            "line 2: display at index 0: \"frame\" must be an array of x, y, width and height" },
        { R"("frontmost": 100)", R"("windows": [])", "line 10: \"windows\" is given twice" },
        { R"("frontmost": 100)", R"("frontmost" 100)", "line 10: no sound JSON: missing name separator" },
        { sound, "[]", "line 1: a scenario is an object" },
    };
    for (const auto& test : cases) {
        std::string text = sound;
        text.replace(text.find(test.from), test.from.size(), test.to);
        const auto result = parseScenario(text);
        const auto* error = std::get_if<ScenarioError>(&result);
        EXPECT_EQ(error ? error->text() : "sound", test.error);
    }
}

TEST(ScenarioFile, GivesAProcessWhatItsApplicationHasUnlessItIsTakenAwayAndItsFaults)
{
    std::string text = sound;
    text.replace(text.find(R"("frontmost")"), 0, R"("faults": { "keyTapMissing": true, "fullScreenDelay": 0.7 },)");
    text.replace(text.find(R"("pid": 100)"), 0,
        R"("name": null, "faults": { "refusesToHide": "once", "fails": { "AXRaise": 2 } },)");

    const auto scenario = std::get<Scenario>(parseScenario(text));
    const Scenario::Process& process = scenario.processes.at(0);
    EXPECT_EQ(process.bundleIdentifier, "org.example.mail");
    EXPECT_EQ(process.bundlePath, "/Applications/Mail.app");
    EXPECT_EQ(process.name, std::nullopt);
    EXPECT_EQ(process.faults.refusesToHide, Refusal::once);
    EXPECT_EQ(process.faults.fails.at("AXRaise"), 2);
    EXPECT_TRUE(scenario.faults.keyTapMissing);
    EXPECT_EQ(scenario.faults.fullScreenDelay, 0.7);
}

}
