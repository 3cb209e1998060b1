#pragma once

#include <chrono>
#include <string>

namespace vh {

/// The computer's name for people: the pretty host name when one is set, else the host name. May be empty.
std::string hostName();
/// With which this process's user logs in; empty when the user database does not know.
std::string userName();
/// Name and version of the operating system, such as "Debian GNU/Linux 12".
std::string systemName();
/// Whether this is macOS; else it is Linux.
bool isMacOS();
/// What this system's distribution and those it descends from call themselves, a blank between: "ubuntu debian". Empty
/// when it does not say.
std::string distributionNames();
/// Whether this process has the administrator's rights.
bool isAdministrator();
/// The language the person prefers most, from the environment: "es_ES" → "es". "en" when none is set.
std::string preferredLanguage();
std::chrono::seconds uptime();
/// Another after each start of the system; empty when it is not told.
std::string bootIdentity();

} // namespace vh
