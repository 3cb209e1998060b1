#include "Core/UserDefaults.h"

#include "Platform/Folders.h"
#include "Platform/SystemError.h"

namespace vh {

namespace {

void copyValue(JsonWriter& out, JsonView value) {
    switch (value.kind()) {
    case JsonKind::null:
        return out.null();
    case JsonKind::boolean:
        return out.boolean(*value.boolean());
    case JsonKind::text:
        return out.text(bytesOfJsonText(*value.text()));
    case JsonKind::number:
        if (const auto whole = value.integer())
            return out.integer(*whole);
        if (const auto large = value.unsignedInteger())
            return out.unsignedInteger(*large);
        return out.number(*value.number());
    case JsonKind::array:
        out.beginArray();
        value.forEachElement([&](size_t, JsonView each) { copyValue(out, each); });
        return out.endArray();
    case JsonKind::object:
        out.beginObject();
        value.forEachMember([&](std::string_view key, JsonView each) {
            out.key(bytesOfJsonText(key));
            copyValue(out, each);
        });
        return out.endObject();
    }
}

std::string compactJson(JsonView value) {
    JsonWriter out;
    copyValue(out, value);
    return out.take();
}

std::string prettyJson(const std::map<std::string, std::string>& values) {
    JsonWriter out(JsonStyle::pretty);
    JsonDocument document;
    out.beginObject();
    for (const auto& [key, text] : values) {
        out.key(key);
        copyValue(out, document.parse(text));
    }
    out.endObject();
    return out.take() + "\n";
}

} // namespace

UserDefaults::UserDefaults(std::string file) : file_(std::move(file)) {}

std::string UserDefaults::fileOfUser() {
    return Folders::ofUser().config + "/Varnholt/defaults.json";
}

std::optional<std::string> UserDefaults::textOf(std::string_view key) const {
    const std::lock_guard guard(mutex_);
    try {
        catchUp();
    } catch (const SystemError&) {
        // What was read last still holds while the file cannot be read.
    }
    const auto found = values_.find(std::string(key));
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void UserDefaults::change(const std::string& key, std::optional<std::string> text) {
    const std::lock_guard guard(mutex_);
    const FileLock lock = file_.lock();
    catchUp();
    Values changed = values_;
    if (text)
        changed.insert_or_assign(key, std::move(*text));
    else
        changed.erase(key);
    if (changed == values_ && !file_.isDamaged())
        return;
    file_.write(prettyJson(changed));
    catchUp();
}

/// Throws SystemError.
void UserDefaults::catchUp() const {
    if (const auto text = file_.news())
        read(*text);
}

void UserDefaults::read(const std::string& text) const {
    Values values;
    bool isDamaged = false;
    try {
        JsonDocument document;
        const JsonView root = document.parse(text);
        isDamaged = root.kind() != JsonKind::object;
        root.forEachMember([&](std::string_view key, JsonView value) {
            values.insert_or_assign(bytesOfJsonText(key), compactJson(value));
        });
    } catch (const DecodeError&) {
        isDamaged = true;
    }
    file_.setDamaged(isDamaged);
    values_ = std::move(values);
}

} // namespace vh
