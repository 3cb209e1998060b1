#pragma once

#include <string>

namespace vh {

class Texts;
struct Volume;

/// A volume's name for people; that of the root file system is in their language.
std::string volumeTitle(const Texts& texts, const Volume& volume);

} // namespace vh
