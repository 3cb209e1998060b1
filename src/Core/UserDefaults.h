#pragma once

#include "Core/Codec.h"
#include "Core/SharedFile.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// The settings: dotted keys to JSON values in one file that several processes share. Any thread may call.
/// A file that is no JSON counts as empty and is kept as "<file>.damaged" when it is first written over.
class UserDefaults {
public:
    /// The file and its folder are made by the first write.
    explicit UserDefaults(std::string file);
    /// "<config>/Varnholt/defaults.json". Throws SystemError when the user has no home.
    static std::string fileOfUser();

    /// Nothing when the key is missing or its value is of another kind.
    template <class T>
    std::optional<T> get(std::string_view key) const {
        const auto text = textOf(key);
        if (!text)
            return std::nullopt;
        try {
            return decodeJson<T>(*text);
        } catch (const DecodeError&) {
            return std::nullopt;
        }
    }

    /// Throws SystemError when it cannot be stored, EncodeError when it has no JSON form.
    template <class T>
    void set(std::string_view key, const T& value) {
        change(std::string(key), encodeJson(value));
    }
    /// Texts may be given as literals.
    void set(std::string_view key, const char* value) { set(key, std::string(value)); }
    void remove(std::string_view key) { change(std::string(key), std::nullopt); }

    const std::string& file() const { return file_.path(); }

private:
    using Values = std::map<std::string, std::string>; // each value as compact JSON

    std::optional<std::string> textOf(std::string_view key) const;
    void change(const std::string& key, std::optional<std::string> text);
    void catchUp() const;
    void read(const std::string& text) const;

    mutable std::mutex mutex_;
    mutable SharedFile file_;
    mutable Values values_;
};

} // namespace vh
