#include "tools/Defaults.h"

#include "base/PreferenceFile.h"
#include "base/PropertyList.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string_view>

namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;

constexpr const char* usage = R"(usage: defaults VERB [DOMAIN] ...

  read                          all domains
  read DOMAIN [KEY]             a domain, or one value of it
  read-type DOMAIN KEY          the kind of a value
  write DOMAIN KEY VALUE        a value: text, or an old-style property list
  write DOMAIN KEY KIND VALUE   one of a kind: -string, -bool (true, yes, 1, false, no, 0), -int, -float
  write DOMAIN KEY -array VALUE...      texts, replacing what is there; none for an empty array
  write DOMAIN KEY -array-add VALUE...  texts, added to those there
  write DOMAIN PLIST            the whole domain, replaced by a property list's text
  delete DOMAIN [KEY]           a value, or the whole domain
  import DOMAIN FILE            the whole domain, replaced by a property-list file; "-" is standard input
  export DOMAIN FILE            the domain into a property-list file; "-" is standard output
  domains                       the names of all domains
  help                          this text

A domain is a name such as com.merrowen.vantry. What a running program is told of a change is its own affair.
)";

/// Why a command can't be carried out, for people.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Text in the printed form of property lists: as it stands when it is plain, else in quotes.
std::string quoted(const std::string& text)
{
    const bool isPlain = !text.empty() && std::ranges::all_of(text, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || c == '/' || c == '$';
    });
    if (isPlain)
        return text;
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        if (c == '\n')
            result += "\\n";
        else
            result += c;
    }
    return result + '"';
}

void print(std::ostream& out, const Value& value, const std::string& indent = "");

void printEntries(std::ostream& out, const Value& value, const std::string& indent)
{
    const std::string inner = indent + "    ";
    if (const auto* array = value.array()) {
        out << "(\n";
        for (auto element = array->begin(); element != array->end(); ++element) {
            out << inner;
            print(out, *element, inner);
            out << (std::next(element) == array->end() ? "\n" : ",\n");
        }
        out << indent << ')';
        return;
    }
    out << "{\n";
    for (const auto& [key, entry] : *value.dictionary()) {
        out << inner << quoted(key) << " = ";
        print(out, entry, inner);
        out << ";\n";
    }
    out << indent << '}';
}

void print(std::ostream& out, const Value& value, const std::string& indent)
{
    if (value.array() || value.dictionary())
        printEntries(out, value, indent);
    else if (const auto* text = value.string())
        out << quoted(*text);
    else if (const auto flag = value.boolean())
        out << (*flag ? 1 : 0);
    else
        out << description(value);
}

/// A value by itself, as `read DOMAIN KEY` prints it: text without quotes.
void printAlone(std::ostream& out, const Value& value)
{
    if (const auto* text = value.string())
        out << *text;
    else
        print(out, value);
    out << '\n';
}

const char* kindOf(const Value& value)
{
    if (value.boolean())
        return "boolean";
    if (value.string())
        return "string";
    if (value.array())
        return "array";
    if (value.dictionary())
        return "dictionary";
    if (value.data())
        return "data";
    if (value.date())
        return "date";
    if (value.isReal())
        return "float";
    return value.integer() ? "integer" : "unknown";
}

Value booleanOf(const std::string& text)
{
    std::string lower = text;
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const auto& [word, flag] : { std::pair("true", true), { "yes", true }, { "1", true }, { "false", false },
             { "no", false }, { "0", false } })
        if (lower == word)
            return flag;
    throw Refusal("\"" + text + "\" is no boolean: true, yes, 1, false, no or 0");
}

/// The whole text as a number, whatever the locale.
template <class Number>
Value numberOf(const std::string& text)
{
    Number number {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        throw Refusal(
            "\"" + text + "\" is no " + (std::is_integral_v<Number> ? "integer" : "number") + " or too large");
    return number;
}

using Reader = Value (*)(const std::string& text);
const std::array<std::pair<std::string_view, Reader>, 8> kinds { {
    { "-string", [](const std::string& text) -> Value { return text; } },
    { "-bool", booleanOf },
    { "-boolean", booleanOf },
    { "-int", numberOf<std::int64_t> },
    { "-integer", numberOf<std::int64_t> },
    { "-float", numberOf<double> },
    { "-real", numberOf<double> },
    { "-data", [](const std::string&) -> Value { throw Refusal("data is written by \"import\" alone"); } },
} };

/// What a file of these bytes would hold.
PreferenceFile::Contents contentsOf(const std::string& bytes, const std::string& name)
{
    const auto value = PropertyList::parse(bytes);
    if (!value || !value->dictionary())
        throw Refusal(name + " holds no property list with a dictionary at its top");
    return { {}, PreferenceFile::Condition::sound, PropertyList::isBinary(bytes), *value->dictionary() };
}

/// What follows a key in `write`. `present` is what is there now.
Value valueOf(const Arguments& rest, const Value* present)
{
    const std::string& first = rest.front();
    if (first == "-array" || first == "-array-add") {
        Value::Array array = first == "-array-add" && present && present->array() ? *present->array() : Value::Array();
        array.insert(array.end(), std::next(rest.begin()), rest.end());
        return array;
    }
    const auto kind = std::ranges::find(kinds, first, &std::pair<std::string_view, Reader>::first);
    if (kind != kinds.end()) {
        if (rest.size() != 2)
            throw Refusal(first + " wants one value");
        return kind->second(rest[1]);
    }
    if (rest.size() != 1
        || (first.size() > 1 && first.front() == '-' && std::isalpha(static_cast<unsigned char>(first[1]))))
        throw Refusal("\"" + first + "\" is no kind of value");
    return first;
}

/// One command line at work.
class Command {
public:
    Command(const std::string& folder, Arguments arguments, std::ostream& out)
        : folder_(folder)
        , arguments_(std::move(arguments))
        , out_(out)
    {
    }

    void run()
    {
        struct Verb {
            std::string_view name;
            std::size_t least;
            std::size_t most;
            void (Command::*run)();
        };
        constexpr std::size_t any = 1'000'000;
        static const Verb verbs[] = {
            { "read", 1, 3, &Command::read },
            { "read-type", 3, 3, &Command::readType },
            { "write", 3, any, &Command::write },
            { "delete", 2, 3, &Command::remove },
            { "import", 3, 3, &Command::import },
            { "export", 3, 3, &Command::exportTo },
            { "domains", 1, 1, &Command::domains },
            { "help", 1, 1, &Command::help },
            { "--help", 1, 1, &Command::help },
        };
        const auto verb = std::ranges::find(verbs, arguments_.empty() ? "" : arguments_.front(), &Verb::name);
        if (verb == std::end(verbs) || arguments_.size() < verb->least || arguments_.size() > verb->most)
            throw Refusal(std::string("unexpected arguments; leaving defaults unchanged\n") + usage);
        (this->*verb->run)();
    }

private:
    PreferenceFile file() const
    {
        const std::string& domain = arguments_[1];
        if (domain.empty() || domain.front() == '.' || domain.find('/') != domain.npos)
            throw Refusal("\"" + domain + "\" is no name of a domain");
        return PreferenceFile(folder_ + "/" + domain + ".plist");
    }

    const std::string& domain() const { return arguments_[1]; }
    const std::string& key() const { return arguments_[2]; }

    PreferenceFile::Contents contents() const
    {
        auto contents = file().read();
        if (contents.condition == PreferenceFile::Condition::missing)
            throw Refusal("domain " + domain() + " does not exist");
        if (contents.condition != PreferenceFile::Condition::sound)
            throw Refusal(file().path() + " can't be read as a property list");
        return contents;
    }

    static const Value& existing(const Value::Dictionary& values, const std::string& domain, const std::string& key)
    {
        const Value* value = values.find(key);
        if (!value)
            throw Refusal("the domain/default pair of (" + domain + ", " + key + ") does not exist");
        return *value;
    }

    void change(const PreferenceFile::Change& change) const
    {
        PreferenceFile::Contents contents = file().read();
        if (const std::string reason = file().change(contents, change); !reason.empty())
            throw Refusal("could not write domain " + domain() + ": " + reason);
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder_, error))
            if (entry.path().extension() == ".plist")
                names.push_back(entry.path().stem().string());
        std::ranges::sort(names);
        return names;
    }

    void read()
    {
        if (arguments_.size() == 1) {
            Value::Dictionary all;
            for (const std::string& name : names())
                all.set(name, PreferenceFile(folder_ + "/" + name + ".plist").read().values);
            printAlone(out_, all);
            return;
        }
        const auto values = contents().values;
        printAlone(out_, arguments_.size() == 2 ? Value(values) : existing(values, domain(), key()));
    }

    void readType() { out_ << "Type is " << kindOf(existing(contents().values, domain(), key())) << '\n'; }

    void write()
    {
        if (arguments_.size() == 3) {
            replaceBy(contentsOf(arguments_[2], "the text"));
            return;
        }
        const Arguments rest(std::next(arguments_.begin(), 3), arguments_.end());
        valueOf(rest, nullptr);
        change([&](PreferenceFile::Contents& present) {
            present.values.set(key(), valueOf(rest, present.values.find(key())));
        });
    }

    void remove()
    {
        const auto present = contents();
        if (arguments_.size() == 3) {
            existing(present.values, domain(), key());
            change([&](PreferenceFile::Contents& now) { now.values.erase(key()); });
        } else if (const std::string reason = file().remove(); !reason.empty())
            throw Refusal("could not delete domain " + domain() + ": " + reason);
    }

    void import()
    {
        const std::string& name = arguments_[2];
        const auto bytes = readFile(name == "-" ? "/dev/stdin" : name);
        if (!bytes)
            throw Refusal(name + " can't be read");
        replaceBy(contentsOf(*bytes, name));
    }

    void exportTo()
    {
        const auto present = contents();
        // In its own format: one may hold what the other has no room for.
        const std::string bytes
            = present.isBinary ? PropertyList::binary(present.values) : PropertyList::xml(present.values);
        if (arguments_[2] == "-")
            out_ << bytes;
        else if (const std::string reason = replaceFile(arguments_[2], bytes, 0600); !reason.empty())
            throw Refusal("could not write " + arguments_[2] + ": " + reason);
    }

    void domains()
    {
        std::string list;
        for (const std::string& name : names())
            list += (list.empty() ? "" : ", ") + name;
        out_ << list << '\n';
    }

    void help() { out_ << usage; }

    void replaceBy(const PreferenceFile::Contents& other) const
    {
        change([&](PreferenceFile::Contents& present) {
            present.values = other.values;
            present.isBinary = other.isBinary;
        });
    }

    const std::string& folder_;
    Arguments arguments_;
    std::ostream& out_;
};

}

int Defaults::run(
    const std::string& folder, const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors)
{
    try {
        Command(folder, arguments, out).run();
        return 0;
    } catch (const Refusal& refusal) {
        errors << "defaults: " << refusal.what() << '\n';
        return 1;
    }
}
