#include "help/completion_entries.h"
#include "help/completions.h"

namespace orv::cli {

namespace {

constexpr std::string_view kHead =
    R"(# Completion of orv command lines in fish; orv completions fish prints it.

# The verb that the next word belongs to: the first, or the one after the last comma.
function __orv_verb
    set -l words (commandline -opc)
    set -l verb
    set -l next 1
    for word in $words[2..-1]
        if test $next = 1
            set verb $word
            set next 0
        end
        if test "$word" = ,
            set next 1
            set verb
        end
    end
    echo "$verb"
end

function __orv_at
    test (__orv_verb) = "$argv[1]"
end

function __orv_first
    test (count (commandline -opc)) = 1
end

function __orv_after_comma
    not __orv_first; and __orv_at ''
end

function __orv_first_word_of
    __orv_at $argv[1]; and test (count (commandline -opc)) = 2
end

complete -c orv -f -n __orv_first -l help -s h -d 'List verbs and topics'
complete -c orv -f -n __orv_first -l version -d 'show the version'
)";

/// Between single quotes, where fish knows two escapes.
std::string quoted(std::string_view text) {
    return "'" + escaped(text, "\\'") + "'";
}

std::string inList(const std::string& word) {
    return escaped(word, "\\()*[]{}?~$<>&;|'\" ");
}

std::string list(const std::vector<std::string>& words) {
    return quoted(joinedWords(words, " ", inList));
}

std::string entryLine(const Verb& verb, const CompletionEntry& entry) {
    std::string text =
        "complete -c orv -n " + quoted("__orv_at " + verb.name) + " -l " + entry.name;
    if (entry.letter != '\0') {
        text += std::string(" -s ") + entry.letter;
    }
    if (entry.kind == OptionKind::Value) {
        const bool paths = entry.values.empty() && entry.valueKind != ValueKind::Other;
        text += paths ? " -r -F" : " -x";
    }
    if (!entry.values.empty()) {
        text += " -a " + list(entry.values);
    }
    return text + " -d " + quoted(entry.help) + "\n";
}

}  // namespace

std::string fishCompletions() {
    std::string text(kHead);
    for (const Verb& verb : verbTable()) {
        text += "\ncomplete -c orv -f -n __orv_first -a " + verb.name + " -d " +
                quoted(verb.summary) + "\n";
        if (verb.method != nullptr) {
            text += "complete -c orv -f -n __orv_after_comma -a " + verb.name + " -d " +
                    quoted(verb.summary) + "\n";
        }
        if (!takesFiles(verb)) {
            text += "complete -c orv -f -n " + quoted("__orv_at " + verb.name) + "\n";
        }
        if (!firstWords(verb).empty()) {
            text += "complete -c orv -f -n " + quoted("__orv_first_word_of " + verb.name) +
                    " -a " + list(firstWords(verb)) + "\n";
        }
        for (const CompletionEntry& entry : completionEntries(verb)) {
            text += entryLine(verb, entry);
        }
    }
    return text;
}

}  // namespace orv::cli
