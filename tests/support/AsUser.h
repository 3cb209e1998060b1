#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace vh::test {

/// What is opened while this lives is opened by a user without rights, when the tests run as root.
class AsUser {
public:
    static constexpr unsigned user = 65534;

    AsUser() { EXPECT_EQ(wasRoot_ ? ::seteuid(user) : 0, 0); }
    ~AsUser() { EXPECT_EQ(wasRoot_ ? ::seteuid(0) : 0, 0); }
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;

private:
    const bool wasRoot_ = ::geteuid() == 0;
};

} // namespace vh::test
