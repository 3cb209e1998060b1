#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vh::mail {

/// Text as a header may hold it: as it is when it is plain ASCII, else in encoded words (RFC 2047), folded between
/// them.
std::string headerText(std::string_view text);

/// "Name <address>" or the address alone.
std::string mailbox(std::string_view name, const std::string& address);

/// All addresses of a header, one a line of it.
std::string addressList(const std::vector<std::string>& addresses);

/// The Content-Disposition of an attachment; a name that is not plain ASCII goes by RFC 2231.
std::string attachmentDisposition(std::string_view fileName);

/// Every line of the text ended by CRLF, as mail wants it.
std::string withMailLineEnds(std::string_view text);

/// Whether a header could be smuggled in with the text: it has a line end or another control character.
bool breaksHeader(std::string_view text);

} // namespace vh::mail
