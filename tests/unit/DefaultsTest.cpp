#include "tools/Defaults.h"
#include "base/PropertyList.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace {

namespace fs = std::filesystem;

class DefaultsTest : public testing::Test {
protected:
    DefaultsTest() { fs::create_directories(folder_); }
    ~DefaultsTest() override { fs::remove_all(folder_); }

    struct Outcome {
        int status;
        std::string out;
        std::string errors;
    };
    Outcome run(const std::vector<std::string>& arguments) const
    {
        std::ostringstream out;
        std::ostringstream errors;
        const int status = Defaults::run(folder_.string(), arguments, out, errors);
        return { status, out.str(), errors.str() };
    }

    std::optional<Value> value(const std::string& key) const
    {
        std::ifstream in(folder_ / "d.plist", std::ios::binary);
        const auto domain = PropertyList::parse(std::string(std::istreambuf_iterator<char>(in), {}));
        const Value* found = domain ? domain->find(key) : nullptr;
        return found ? std::optional(*found) : std::nullopt;
    }

    fs::path folder_ = fs::temp_directory_path() / ("vantry-defaults-" + std::to_string(::getpid()));
};

}

TEST_F(DefaultsTest, ValuesAreWrittenOfTheirKindAndReadAsText)
{
    struct Row {
        std::vector<std::string> arguments;
        std::optional<Value> value;
        const char* read;
        const char* type;
    };
    const Row rows[] = {
        { { "text" }, "text", "text\n", "string" },
        { { "-string", "-1" }, "-1", "-1\n", "string" },
        { { "-bool", "YES" }, true, "1\n", "boolean" },
        { { "-bool", "false" }, false, "0\n", "boolean" },
        { { "-int", "-9223372036854775808" }, std::numeric_limits<std::int64_t>::min(), "-9223372036854775808\n",
            "integer" },
        { { "-float", "0" }, 0.0, "0\n", "float" },
        { { "-float", "0.8" }, 0.8, "0.8\n", "float" },
        { { "-array" }, Value::Array {}, "(\n)\n", "array" },
        { { "-array", "a", "b c" }, Value::Array { "a", "b c" }, "(\n    a,\n    \"b c\"\n)\n", "array" },
        { { "-array-add", "d\"" }, Value::Array { "a", "b c", "d\"" }, "(\n    a,\n    \"b c\",\n    \"d\\\"\"\n)\n",
            "array" },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments.back());
        std::vector<std::string> arguments { "write", "d", "key" };
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        EXPECT_EQ(run(arguments).status, 0);
        EXPECT_EQ(value("key"), row.value);
        EXPECT_EQ(run({ "read", "d", "key" }).out, row.read);
        EXPECT_EQ(run({ "read-type", "d", "key" }).out, "Type is " + std::string(row.type) + "\n");
    }
    run({ "write", "d", "other", "-bool", "true" });
    EXPECT_EQ(run({ "delete", "d", "key" }).status, 0);
    EXPECT_EQ(run({ "read", "d" }).out, "{\n    other = 1;\n}\n");
    EXPECT_EQ(run({ "domains" }).out, "d\n");
    EXPECT_EQ(run({ "delete", "d" }).status, 0);
    EXPECT_EQ(run({ "domains" }).out, "\n");
}

TEST_F(DefaultsTest, WhatIsExportedIsImportedExactlyAndReplacesAll)
{
    const fs::path backup = folder_ / "backup";
    const Value::Dictionary kept { { "real", 3.0 }, { "date", Value::Date { 4e9 } },
        { "list", Value::Array { 1, true, "x" } }, { "data", Value::Data { std::byte { 0 }, std::byte { 255 } } },
        { "", Value::Dictionary { { "k", 1 } } } };
    for (const bool isBinary : { false, true }) {
        const std::string bytes = isBinary ? PropertyList::binary(kept) : PropertyList::xml(kept);
        std::ofstream(folder_ / "d.plist", std::ios::binary) << bytes;
        ASSERT_EQ(run({ "export", "d", backup.string() }).status, 0);
        run({ "delete", "d", "real" });
        run({ "write", "d", "added", "x" });
        ASSERT_EQ(run({ "import", "d", backup.string() }).status, 0);
        std::ifstream in(folder_ / "d.plist", std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), bytes);
    }
}

TEST_F(DefaultsTest, WhatCannotBeDoneIsSaidAndChangesNothing)
{
    run({ "write", "d", "key", "kept" });
    std::ofstream(folder_ / "damaged.plist") << "<plist>";
    const std::string damaged = (folder_ / "damaged.plist").string();
    fs::create_directories(folder_ / "folder.plist");
    struct Row {
        std::vector<std::string> arguments;
        const char* error;
    };
    const Row rows[] = {
        { {}, "unexpected arguments" },
        { { "rad", "d" }, "unexpected arguments" },
        { { "read", "d", "key", "more" }, "unexpected arguments" },
        { { "read", "none" }, "domain none does not exist" },
        { { "read", "d", "none" }, "the domain/default pair of (d, none) does not exist" },
        { { "delete", "d", "none" }, "(d, none) does not exist" },
        { { "write", "d", "key", "-int", "1.5" }, "no integer" },
        { { "write", "d", "key", "-int", "9223372036854775808" }, "too large" },
        { { "write", "d", "key", "-float", "1,5" }, "no number" },
        { { "write", "d", "key", "-bool", "maybe" }, "no boolean" },
        { { "write", "d", "key", "-sting", "x" }, "no kind of value" },
        { { "write", "d", "key", "-int" }, "wants one value" },
        { { "write", "d", "<plist>" }, "no property list" },
        { { "import", "d", damaged }, "no property list" },
        { { "import", "d", damaged + ".none" }, "can't be read" },
        { { "export", "d", folder_.string() + "/no/such/folder" }, "could not write" },
        { { "read", "damaged" }, "can't be read as a property list" },
        { { "import", "d", folder_.string() }, "can't be read" },
        { { "read", "folder" }, "can't be read" },
        { { "read", "../d" }, "no name of a domain" },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.error);
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.errors.find(row.error), std::string::npos) << outcome.errors;
        EXPECT_EQ(value("key"), Value("kept"));
    }
}
