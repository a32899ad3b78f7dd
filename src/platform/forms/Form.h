#pragma once

#include "appkit/NSColor.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// What a settings window shows, as plain data: made anew from the settings whenever they change, and compared with
/// what is on the screen by whoever shows it. Closures are called on the main thread.
namespace forms {

/// How much a text or a symbol stands out.
enum class TextStyle { primary, secondary, tertiary };

struct Toggle {
    std::string label;
    bool isOn = false;
    std::function<void(bool)> set;
    /// A label that isn't shown is still its accessible name.
    bool hidesLabel = false;
};

struct Picker {
    std::string label;
    std::vector<std::string> options;
    std::size_t selection = 0;
    std::function<void(std::size_t)> set;
    bool isEnabled = true;
};

/// `valueText` stands behind the slider.
struct Slider {
    std::string label;
    double value = 0;
    double lowest = 0;
    double highest = 1;
    std::function<void(double)> set;
    std::string valueText;
    /// Points.
    double width = 0;
    double valueTextWidth = 0;
};

/// A colour without opacity.
struct ColorPicker {
    std::string label;
    NSColor value;
    std::function<void(NSColor)> set;
};

/// Without a symbol it shows its title; with one, the title is its accessible name. One with a symbol is small.
struct Button {
    std::string title;
    std::function<void()> action;
    bool isEnabled = true;
    std::string symbol = {};
};

/// A label on the left and what can't be changed on the right, in digits of one width.
struct LabeledContent {
    std::string label;
    std::string content;
};

/// A text, with a symbol before it where one is named.
struct Label {
    std::string text;
    std::string symbol = {};
    TextStyle style = TextStyle::primary;
    /// In the size of footers.
    bool isSmall = false;
};

struct Symbol {
    std::string name;
    TextStyle style = TextStyle::primary;
    std::string toolTip = {};
};

using Control = std::variant<Toggle, Picker, Slider, ColorPicker, Button, LabeledContent, Label, Symbol>;

/// Controls beside each other. What a row is known by is the same as long as it is the same row, wherever it goes.
struct Row {
    std::string id;
    std::vector<Control> controls;
};

struct Section {
    std::string header;
    std::vector<Row> rows;
    std::string footer;
};

struct Form {
    std::vector<Section> sections;
};

/// An entry of a sidebar.
struct SidebarRow {
    std::string id;
    std::string title;
    std::string symbol;
    /// A line on what it holds.
    std::string summary;
};

struct SidebarSection {
    std::string header;
    std::vector<SidebarRow> rows;
};

/// A sidebar and what is selected in it.
struct NavigationSplitView {
    std::vector<SidebarSection> sidebar;
    std::string selection;
    std::function<void(const std::string& id)> select;
    /// Points.
    double narrowest = 0;
    double ideal = 0;
    double widest = 0;
    /// Of what is selected.
    std::string title;
    Form detail;
};

}
