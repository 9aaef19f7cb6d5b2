#pragma once

#include <string>

#include "options/verb.h"

namespace orv::cli {

/// How much a help tells.
enum class HelpLength {
    Short,  ///< fits a screen: what is rare is named alone
    Full,   ///< every option, every choice, the literature
};

/// What `orv` alone prints: where to start.
std::string welcomeText();

/// What `orv --help` prints: verbs and topics.
std::string generalHelp();

/// What `orv VERB --help` prints.
std::string verbHelp(const Verb& verb, HelpLength length = HelpLength::Short);

/// What `orv --version` prints.
std::string versionText();

}  // namespace orv::cli
