#include "help/completion_entries.h"
#include "help/completions.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

constexpr std::string_view kHead =
    R"sh(# Completion of orv command lines in bash; orv completions bash prints it.

# Offers those of the words in $1, one a line, that begin as the current one.
_orv_reply() {
    local word plain=${cur//\\/}
    while IFS= read -r word; do
        if [[ $word == "$plain"* ]]; then
            COMPREPLY+=("$(printf '%q' "$word")")
        fi
    done <<< "$1"
}

# Offers files, or folders with -d.
_orv_files() {
    local name
    compopt -o filenames 2> /dev/null
    while IFS= read -r name; do
        COMPREPLY+=("$name")
    done < <(compgen "$1" -- "$cur")
}

)sh";

constexpr std::string_view kMain = R"sh(
_orv() {
    local cur=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local verb=${COMP_WORDS[1]} first=2 options= words= kind= starts= files= i
    COMPREPLY=()
    if [[ $cur == = ]]; then
        cur=
        before+='='
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}'='
    fi
    if ((COMP_CWORD == 1)); then
        _orv_reply "$orv_verbs"
        return
    fi
    for ((i = 2; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} == , ]]; then
            verb=${COMP_WORDS[i + 1]}
            first=$((i + 2))
        fi
    done
    if [[ $before == , ]]; then
        _orv_reply "$orv_methods"
        return
    fi
    _orv_verb "$verb" "$before"
    if [[ -n $words ]]; then
        _orv_reply "$words"
    elif [[ $kind == folder ]]; then
        _orv_files -d
    elif [[ $kind == file ]]; then
        _orv_files -f
    elif [[ $kind == value ]]; then
        return
    elif [[ $cur == -* ]]; then
        _orv_reply "$options"
    elif [[ -n $starts ]] && ((COMP_CWORD == first)); then
        _orv_reply "$starts"
    elif [[ $files == yes ]]; then
        _orv_files -f
    fi
}

complete -F _orv orv
)sh";

std::string asItIs(const std::string& word) {
    return word;
}

/// Words in single quotes, one a line.
std::string lines(const std::vector<std::string>& words) {
    return singleQuoted(joinedWords(words, "\n", asItIs));
}

/// "-o|--output|--output=" or, for a value that needs '=', "--strip=".
std::string pattern(const CompletionEntry& entry) {
    const std::string name = "--" + entry.name;
    if (entry.kind == OptionKind::Maybe) {
        return name + "=";
    }
    return (entry.letter != '\0' ? std::string("-") + entry.letter + " | " : "") + name +
           " | " + name + "=";
}

std::string action(const CompletionEntry& entry) {
    if (!entry.values.empty()) {
        return "words=" + lines(entry.values);
    }
    return entry.valueKind == ValueKind::File     ? "kind='file'"
           : entry.valueKind == ValueKind::Folder ? "kind='folder'"
                                                  : "kind='value'";
}

std::string verbCase(const Verb& verb) {
    std::vector<std::string> options;
    std::string cases;
    for (const CompletionEntry& entry : completionEntries(verb)) {
        options.push_back("--" + entry.name);
        if (entry.letter != '\0') {
            options.push_back(std::string("-") + entry.letter);
        }
        if (entry.kind != OptionKind::Flag) {
            cases += "                " + pattern(entry) + ") " + action(entry) + " ;;\n";
        }
    }
    std::string text = "        " + verb.name + ")\n";
    text += "            options=" + lines(options) + "\n";
    if (!firstWords(verb).empty()) {
        text += "            starts=" + lines(firstWords(verb)) + "\n";
    }
    text += takesFiles(verb) ? "            files=yes\n" : "";
    if (!cases.empty()) {
        text += "            case $2 in\n" + cases + "            esac\n";
    }
    return text + "            ;;\n";
}

}  // namespace

std::string bashCompletions() {
    std::vector<std::string> verbs;
    std::string cases;
    for (const Verb& verb : verbTable()) {
        verbs.push_back(verb.name);
        cases += verbCase(verb);
    }
    verbs.insert(verbs.end(), {"--help", "--version"});
    return std::string(kHead) + "orv_verbs=" + lines(verbs) +
           "\norv_methods=" + lines(methodNames()) +
           "\n\n"
           "# Tells what verb $1 takes, after the word $2.\n"
           "_orv_verb() {\n"
           "    files=\n"
           "    case $1 in\n" +
           cases + "    esac\n}\n" + std::string(kMain);
}

}  // namespace orv::cli
