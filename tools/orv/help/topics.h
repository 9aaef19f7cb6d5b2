#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orv::cli {

/// A text of `orv help TOPIC`.
struct HelpTopic {
    std::string_view name;
    std::string_view summary;  ///< one line
    /// Paragraphs; lines that begin with a space stay as they are.
    std::string (*text)();
};

/// All topics in the order of help.
std::span<const HelpTopic> helpTopics();

/// The topic of a name, or null.
const HelpTopic* findTopic(std::string_view name);

}  // namespace orv::cli
