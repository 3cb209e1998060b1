#pragma once

#include "Core/ErrorMessage.h"
#include "Platform/CancelToken.h"
#include "Platform/ServiceRegistration.h"

#include <stdexcept>
#include <string>

namespace vh::helper {

/// Why a call of the helper came to nothing. what() is in English, for logs; text() for people.
class HelperClientError : public std::runtime_error, public SpeakingError {
public:
    enum class Kind {
        unavailable,
        connectionFailed,
        timeout,
        refused,
        restarted, ///< it failed again after the helper was repaired
        badStatus, ///< the answer is not what was agreed
        taskFailed,
        installFailed,
        refusedRemoval
    };

    /// `said`: the helper's own words when it refused, the method's name of a timeout, otherwise the reason.
    HelperClientError(Kind what, const std::string& said);
    static HelperClientError unavailable(HelperRegistrationStatus status);

    const Kind kind;
    const HelperRegistrationStatus status; ///< of unavailable
    const std::string words;
    /// The helper's own words when it refused.
    Message message() const override;
    std::string text(const Texts& texts) const { return worded(message(), texts); }

private:
    HelperClientError(Kind what, HelperRegistrationStatus registration, const std::string& said);
};

/// Thrown out of a call that was cancelled after it was sent: what the helper has begun goes on there to its end.
class LeftToHelper : public Cancelled {};

} // namespace vh::helper
