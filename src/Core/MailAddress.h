#pragma once

#include <string_view>

namespace vh {

struct MailAddress {
    /// Whether mail can be sent there: one address of the form local@domain (RFC 5321, 5322 dot-atoms; UTF-8 as RFC
    /// 6531 allows), without name, comment or spaces.
    static bool isValid(std::string_view address);
};

} // namespace vh
