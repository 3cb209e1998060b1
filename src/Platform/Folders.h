#pragma once

#include <cstdint>
#include <string>

namespace vh {

/// Where this user's things lie, absolute and without a trailing slash.
struct Folders {
    std::string home;
    std::string caches;
    std::string logs; ///< application logs and state
    std::string data; ///< application support
    std::string config;
    std::string runtime; ///< sockets and locks; a folder of the temporary one when the system offers none
    std::string temporary;
    /// The administrator is at work in another user's home, where all that is made would be out of that user's reach.
    bool homeIsAnothers = false;

    /// Read from the environment and the user database at every call. Throws SystemError when the user has no home.
    static Folders ofUser();
    /// Those of the user with this identifier, by the user database alone and at their usual places. Throws SystemError
    /// when there is no such user or no home.
    static Folders ofUser(uint32_t user);
};

} // namespace vh
