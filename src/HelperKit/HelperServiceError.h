#pragma once

#include "Platform/ServiceMessage.h"

#include <stdexcept>
#include <string>

namespace vh::helper {

/// Why the helper refuses. what() is the text that the person sees, code() its case's name.
class HelperServiceError : public std::runtime_error {
public:
    static HelperServiceError denied(const std::string& path);
    static HelperServiceError rootDeletionForbidden(const std::string& path);
    static HelperServiceError deniedBasename(const std::string& name);
    static HelperServiceError notFound(const std::string& path);
    static HelperServiceError unknownTask(const std::string& id);
    static HelperServiceError taskNotPrivileged(const std::string& id);
    static HelperServiceError badJobSpec(const std::string& text);
    static HelperServiceError unknownJob(const std::string& id);
    /// A refusal of another policy, such as that of applications, with its whole text.
    HelperServiceError(std::string code, const std::string& text);

    const std::string& code() const { return code_; }
    /// As it crosses the connection. Bytes that are no text are shown as replacements.
    ServiceRefusal refusal() const;

private:
    std::string code_;
};

} // namespace vh::helper
