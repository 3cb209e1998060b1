#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

namespace vh::cli {

/// "--name" and "--no-name". Unset when neither is said, which a plain flag cannot tell from "no".
inline void addSwitch(CLI::App& verb, const std::string& name, std::optional<bool>& value,
                      const std::string& help) {
    verb.add_flag_function(
        "--" + name + ",!--no-" + name, [&value](int64_t count) { value = count > 0; }, help);
}

} // namespace vh::cli
