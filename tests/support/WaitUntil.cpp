#include "support/WaitUntil.h"

#include "Platform/Files.h"

#include <chrono>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <thread>

namespace vh::test {

using namespace std::chrono_literals;

namespace {

constexpr auto limit = 60s;
constexpr auto betweenLooks = 10ms;

} // namespace

bool waitUntil(std::string_view what, const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << "waited too long: " << what;
            return false;
        }
        std::this_thread::sleep_for(betweenLooks);
    }
    return true;
}

bool isAlive(int pid) {
    const auto state = readFileIfPresent(fmt::format("/proc/{}/stat", pid));
    return state && state->substr(state->rfind(')') + 2, 1) != "Z";
}

} // namespace vh::test
