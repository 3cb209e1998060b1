#include "Features/Flows/FlowFields.h"

#include "Core/Base64.h"
#include "Features/Flows/FlowFieldWalk.h"
#include "Features/Flows/FlowTexts.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace vh::flows {

namespace {

using Kind = FlowField::Kind;

constexpr std::string_view hidden[] = {
    "start.diskMounted.label",   "start.diskUnmounted.label", "start.flowFinished.name",
    "start.shareMounted.server", "start.shareMounted.name",   "agent.profile",
};

std::string joined(const std::vector<std::string>& list, std::string_view separator) {
    return fmt::format("{}", fmt::join(list, separator));
}

Kind kindOfText(std::string_view key, std::string_view last) {
    constexpr std::string_view folders[] = {"source", "destination", "root", "localPath", "folder"};
    if (key == "script.name")
        return Kind::script;
    if (last == "prompt" || last == "message" || last == "body")
        return Kind::multiline;
    return std::ranges::find(folders, last) == std::end(folders) ? Kind::text : Kind::folder;
}

Kind kindOfList(std::string_view last) {
    return last == "roots" || last == "sources" || last == "destinations" ? Kind::paths : Kind::list;
}

/// The values that a text of a tool is chosen from.
std::vector<std::string> choicesOfText(std::string_view last) {
    if (last == "probe")
        return {"ping", "traceroute", "dns"};
    if (last == "mode")
        return {"download", "upload", "both", "mirror"};
    return {};
}

bool takesVariables(std::string_view key) {
    return !key.starts_with("start.") && !key.starts_with("computer.") && key != "email.recipients";
}

/// Makes a field of each place it is shown.
class Reader {
public:
    bool isDone() const { return false; }

    template <class Union>
    bool choose(const FieldKey& key, Union& value) {
        add(key, Kind::choice, caseName(value)).choices = caseNames<Union>();
        return false;
    }
    void timeOfDay(const FieldKey& key, int hour, int minute) {
        add(key, Kind::time, fmt::format("{:02}:{:02}", hour, minute));
    }
    void leaf(const FieldKey& key, const std::string& text) {
        const auto choices = choicesOfText(key.last);
        FlowField& field = add(key, choices.empty() ? kindOfText(key.path, key.last) : Kind::choice, text);
        field.takesVariables = choices.empty() && takesVariables(key.path);
        field.choices = choices;
    }
    void leaf(const FieldKey& key, const std::vector<std::string>& list) {
        const bool isShort = key.last == "extensions";
        FlowField& field =
            add(key, isShort ? Kind::text : kindOfList(key.last), joined(list, isShort ? ", " : "\n"));
        field.takesVariables = takesVariables(key.path);
    }
    void leaf(const FieldKey& key, bool value) { add(key, Kind::toggle, value ? "true" : "false"); }
    template <std::integral T>
    void leaf(const FieldKey& key, T value) {
        FlowField& field = add(key, Kind::number, fmt::to_string(value));
        if (key.last != "weekday")
            return;
        field.kind = Kind::choice;
        field.choices = {"1", "2", "3", "4", "5", "6", "7"};
    }
    template <DescribedEnumeration E>
    void leaf(const FieldKey& key, E value) {
        FlowField& field = add(key, Kind::choice, rawValue(value));
        for (const E each : allCases<E>())
            field.choices.emplace_back(rawValue(each));
    }
    void leaf(const FieldKey& key, const Uuid& id) { add(key, Kind::text, id.text()); }
    void leaf(const FieldKey& key, const std::optional<Uuid>& id) {
        add(key, key.last == "flow" ? Kind::flow : Kind::computer, id ? id->text() : "");
    }

    std::vector<FlowField> take() {
        std::erase_if(fields_, [](const FlowField& field) {
            return std::ranges::find(hidden, field.key) != std::end(hidden);
        });
        return std::move(fields_);
    }

private:
    FlowField& add(const FieldKey& key, Kind kind, std::string_view value) {
        return fields_.emplace_back(FlowField{std::string(key.path), kind, std::string(value), {}, false});
    }

    std::vector<FlowField> fields_;
};

bool read(std::string_view text, bool& into) {
    into = text == "true";
    return into || text == "false";
}

template <std::integral T>
bool read(std::string_view text, T& into) {
    const bool isNumber = !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    return isNumber && std::from_chars(text.data(), text.data() + text.size(), into).ec == std::errc();
}

bool read(std::string_view text, std::string& into) {
    into = text;
    return true;
}

bool read(std::string_view text, std::vector<std::string>& into) {
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        std::string_view line = text.substr(start, end - start);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!line.empty())
            into.emplace_back(line);
        start = end + 1;
    }
    return true;
}

template <DescribedEnumeration E>
bool read(std::string_view text, E& into) {
    const auto value = fromRaw<E>(text);
    into = value.value_or(into);
    return value.has_value();
}

bool read(std::string_view text, Uuid& into) {
    const auto id = Uuid::parse(text);
    into = id.value_or(into);
    return id.has_value();
}

bool read(std::string_view text, std::optional<Uuid>& into) {
    into = Uuid::parse(text);
    return into || text.empty();
}

/// Sets the one place that the key names.
class Setter {
public:
    Setter(std::string_view path, std::string_view value) : path_(path), value_(value) {}

    bool isDone() const { return isFound_; }
    bool hasSet() const { return hasSet_; }

    template <class Union>
    bool choose(const FieldKey& key, Union& value) {
        if (!isWanted(key))
            return false;
        if (value_ == caseName(value))
            hasSet_ = true; // what is filled in stays
        else if (auto chosen = caseNamed<Union>(value_)) {
            value = std::move(*chosen);
            hasSet_ = true;
        }
        return true;
    }
    void timeOfDay(const FieldKey& key, int& hour, int& minute) {
        int hours = 0;
        int minutes = 0;
        if (!isWanted(key) || value_.size() != 5 || value_[2] != ':' || !read(value_.substr(0, 2), hours) ||
            !read(value_.substr(3), minutes) || hours > 23 || minutes > 59)
            return;
        hour = hours;
        minute = minutes;
        hasSet_ = true;
    }
    template <class T>
    void leaf(const FieldKey& key, T& into) {
        T value{};
        if (!isWanted(key) || !read(value_, value) || !isAllowed(key, value))
            return;
        into = std::move(value);
        hasSet_ = true;
    }

private:
    bool isWanted(const FieldKey& key) {
        isFound_ = isFound_ || key.path == path_;
        return key.path == path_;
    }
    template <class T>
    bool isAllowed(const FieldKey& key, T& value) const {
        if constexpr (std::is_same_v<T, int>)
            return key.last != "weekday" || (value >= 1 && value <= 7);
        if constexpr (std::is_same_v<T, std::vector<std::string>>)
            if (key.last == "extensions")
                value = extensionsOf(value_);
        if constexpr (std::is_same_v<T, std::string>) {
            const auto choices = choicesOfText(key.last);
            return choices.empty() || std::ranges::find(choices, value) != choices.end();
        }
        return true;
    }

    const std::string_view path_;
    const std::string_view value_;
    bool isFound_ = false;
    bool hasSet_ = false;
};

/// The last part of a key; with "kind" the part before it, since there is more than one.
std::string lastPart(std::string_view key) {
    const size_t dot = key.rfind('.');
    const std::string_view last = key.substr(dot + 1);
    if (last != "kind" || dot == std::string_view::npos)
        return std::string(last);
    const std::string_view rest = key.substr(0, dot);
    return fmt::format("{}-kind", rest.substr(rest.rfind('.') + 1));
}

} // namespace

std::vector<FlowField> fieldsOf(const FlowNode& node) {
    FlowNodeKind kind = node.kind;
    Reader reader;
    walkFields(kind, reader);
    auto fields = reader.take();
    for (size_t i = 1; i < fields.size(); ++i)
        if (fields[i - 1].key.ends_with(".rule") &&
            fields[i - 1].value == rawValue(FlowDiskMatch::Rule::disk))
            fields[i].kind = Kind::volume;
    return fields;
}

bool setField(FlowNode& node, std::string_view key, const std::string& value) {
    Setter setter(key, value);
    walkFields(node.kind, setter);
    return setter.hasSet();
}

std::string fieldTitle(std::string_view key, const Texts& texts) {
    return texts.text(fmt::format("nodes.field.{}", lastPart(key)));
}

std::string choiceTitle(std::string_view key, std::string_view choice, const Texts& texts) {
    const std::string part = lastPart(key);
    if (const auto kind = fromRaw<FlowTriggerKind>(choice); kind && part == "start-kind")
        return triggerTitle(*kind, texts);
    if (const auto tool = caseNamed<FleetTool>(choice); tool && part == "tool-kind")
        return toolTitle(*tool, texts);
    return texts.text(fmt::format("nodes.choice.{}.{}", part, choice));
}

} // namespace vh::flows
