#include "help/completion_entries.h"
#include "help/completions.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

constexpr std::string_view kMain = R"(
_orv() {
    integer last=2 i
    for ((i = 3; i <= CURRENT; ++i)); do
        [[ $words[i-1] == , ]] && last=$i
    done
    if ((CURRENT == 2)); then
        _describe -t verbs verb orv_verbs
        return
    fi
    words=("${(@)words[last,-1]}")
    ((CURRENT -= last - 1))
    if ((CURRENT == 1)); then
        _describe -t methods method orv_methods
        return
    fi
    _orv_verb
}

if [[ $funcstack[1] == _orv ]]; then
    _orv "$@"
else
    compdef _orv orv
fi
)";

std::string inList(const std::string& word) {
    return escaped(word, "\\()*[]:?~#^|&;<> ");
}

/// What is offered for a value.
std::string action(const CompletionEntry& entry) {
    if (!entry.values.empty()) {
        return "(" + joinedWords(entry.values, " ", inList) + ")";
    }
    return entry.valueKind == ValueKind::File     ? "_files"
           : entry.valueKind == ValueKind::Folder ? "_files -/"
                                                  : " ";
}

std::string argumentWord(const CompletionEntry& entry) {
    const std::string help = "[" + escaped(entry.help, "\\[]") + "]";
    const std::string value = escaped(entry.placeholder, "\\:") + ":" + action(entry);
    const std::string name = "--" + entry.name;
    if (entry.kind == OptionKind::Maybe) {
        return singleQuoted(name + "=-" + help + "::" + value);
    }
    const bool flag = entry.kind == OptionKind::Flag;
    const std::string rest = singleQuoted(flag ? help : help + ":" + value);
    if (entry.letter == '\0') {
        return singleQuoted(flag ? name : name + "=") + rest;
    }
    const std::string letter = std::string("-") + entry.letter;
    return singleQuoted("(" + letter + " " + name + ")") + "{" + letter + (flag ? "" : "+") +
           "," + name + (flag ? "" : "=") + "}" + rest;
}

std::string verbCase(const Verb& verb) {
    std::string text = "        " + verb.name + ")\n            _arguments -S";
    for (const CompletionEntry& entry : completionEntries(verb)) {
        text += " \\\n                " + argumentWord(entry);
    }
    if (!firstWords(verb).empty()) {
        text += " \\\n                " +
                singleQuoted("1:word:(" + joinedWords(firstWords(verb), " ", inList) + ")");
    }
    if (takesFiles(verb)) {
        text += " \\\n                '*:picture:_files'";
    }
    return text + "\n            ;;\n";
}

std::string described(const Verb& verb) {
    return "    " + singleQuoted(verb.name + ":" + verb.summary) + "\n";
}

}  // namespace

std::string zshCompletions() {
    std::string verbs;
    std::string methods;
    std::string cases;
    for (const Verb& verb : verbTable()) {
        verbs += described(verb);
        methods += verb.method != nullptr ? described(verb) : "";
        cases += verbCase(verb);
    }
    return "#compdef orv\n"
           "# Completion of orv command lines in zsh; orv completions zsh prints it.\n"
           "\n"
           "typeset -ga orv_verbs orv_methods\n"
           "orv_verbs=(\n" +
           verbs + ")\norv_methods=(\n" + methods +
           ")\n"
           "\n"
           "# Completes what follows the verb in words[1].\n"
           "_orv_verb() {\n"
           "    case $words[1] in\n" +
           cases + "    esac\n}\n" + std::string(kMain);
}

}  // namespace orv::cli
