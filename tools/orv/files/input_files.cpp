#include "files/input_files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <utility>

#include "files/image_file.h"
#include "files/path_names.h"
#include "methods/suggestion.h"
#include "system/file_system.h"

namespace orv::cli {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string below(const std::string& folder, const std::string& name) {
    if (folder.empty()) {
        return name;
    }
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

/// What a folder holds, hidden entries left out, in natural order.
struct Listing {
    std::vector<std::string> files;
    std::vector<std::string> folders;  // links to folders left out
    std::string error;
};

Listing listingOf(const std::string& folder) {
    Listing listing;
    std::vector<std::string> names;
    if (!listFolder(folder, names)) {
        listing.error = folder + ": can't be searched: " + std::strerror(errno);
        return listing;
    }
    for (const std::string& name : names) {
        FileState state;
        if (name[0] == '.' || !readState(below(folder, name), state)) {
            continue;
        }
        if (state.kind == FileKind::Regular) {
            listing.files.push_back(name);
        } else if (state.kind == FileKind::Folder &&
                   readLinkState(below(folder, name), state) && state.kind != FileKind::Link) {
            listing.folders.push_back(name);
        }
    }
    std::sort(listing.files.begin(), listing.files.end(), naturallyBefore);
    std::sort(listing.folders.begin(), listing.folders.end(), naturallyBefore);
    return listing;
}

/// Whether a file of a folder is one of the pictures that are asked for.
bool isWanted(const std::string& relative, const InputSettings& settings) {
    if (settings.include.empty()) {
        const FormatEntry* const format = formatOfName(relative);
        return format != nullptr && isCoded(*format);
    }
    return std::any_of(settings.include.begin(), settings.include.end(),
                       [&relative](const std::string& pattern) {
                           const bool path = pattern.find('/') != std::string::npos;
                           return fitsPattern(pattern, path ? relative : fileNameOf(relative),
                                              /*anyCase=*/true);
                       });
}

/// Collects the pictures of a folder.
class FolderSearch {
  public:
    FolderSearch(const InputSettings& settings, std::vector<InputFile>& files)
        : settings_(settings), files_(files) {}

    /// Goes through a folder whose path below the first one is `relative`.
    std::string search(const std::string& folder, const std::string& relative) {
        const Listing listing = listingOf(folder);
        if (!listing.error.empty()) {
            return listing.error;
        }
        for (const std::string& name : listing.files) {
            const std::string inside = below(relative, name);
            if (isWanted(inside, settings_)) {
                files_.push_back({below(folder, name), inside, /*found=*/true});
            }
        }
        foldersInside_ += listing.folders.size();
        for (const std::string& name : listing.folders) {
            if (settings_.recursive) {
                const std::string error = search(below(folder, name), below(relative, name));
                if (!error.empty()) {
                    return error;
                }
            }
        }
        return {};
    }

    /// Folders that were met below the first one.
    std::size_t foldersInside() const { return foldersInside_; }

  private:
    const InputSettings& settings_;
    std::vector<InputFile>& files_;
    std::size_t foldersInside_ = 0;
};

std::string addFolder(const std::string& folder, const InputSettings& settings,
                      std::vector<InputFile>& files) {
    const std::size_t before = files.size();
    FolderSearch search(settings, files);
    const std::string error = search.search(folder, "");
    if (!error.empty() || files.size() > before) {
        return error;
    }
    std::string text =
        folder + ": holds no picture (" +
        (settings.include.empty() ? writableExtensions() : "nothing matches --include") + ")";
    const std::size_t inside = search.foldersInside();
    if (!settings.recursive && inside > 0) {
        text += "; --recursive looks into its " +
                (inside == 1 ? "folder" : std::to_string(inside) + " folders") + " too";
    }
    return text;
}

/// Walks folders along the parts of a pattern.
void matchPattern(const std::string& folder, const std::vector<std::string>& parts,
                  std::size_t next, std::vector<std::string>& found) {
    const std::string& part = parts[next];
    const bool last = next + 1 == parts.size();
    const Listing listing = listingOf(folder);
    if (part == "**") {
        if (!last) {
            matchPattern(folder, parts, next + 1, found);
        }
        for (const std::string& name : listing.folders) {
            matchPattern(below(folder, name), parts, next, found);
        }
        if (!last) {
            return;
        }
    }
    for (const std::string& name : listing.files) {
        if (last && fitsPattern(part, name, /*anyCase=*/false)) {
            found.push_back(below(folder, name));
        }
    }
    for (const std::string& name : listing.folders) {
        if (part != "**" && fitsPattern(part, name, /*anyCase=*/false)) {
            if (last) {
                found.push_back(below(folder, name));
            } else {
                matchPattern(below(folder, name), parts, next + 1, found);
            }
        }
    }
}

bool isPattern(const std::string& word) {
    return word.find_first_of("*?[") != std::string::npos;
}

std::string addPattern(const std::string& word, const InputSettings& settings,
                       std::vector<InputFile>& files) {
    std::string base = rootOf(word);
    std::vector<std::string> parts;
    for (std::size_t at = base.size(); at < word.size();) {
        const std::size_t end = std::min(word.find('/', at), word.size());
        const std::string part = word.substr(at, end - at);
        at = end + 1;
        if (part.empty()) {
            continue;
        }
        if (parts.empty() && !isPattern(part)) {
            base = below(base, part);
        } else {
            parts.push_back(part);
        }
    }
    std::vector<std::string> found;
    matchPattern(base, parts, 0, found);
    if (found.empty()) {
        return word + ": no file matches this pattern";
    }
    const std::size_t skipped =
        base.empty() || base.back() == '/' ? base.size() : base.size() + 1;
    for (const std::string& path : found) {
        if (!isFolder(path)) {
            files.push_back({path, path.substr(skipped), /*found=*/true});
            continue;
        }
        // A folder that a pattern finds may well hold no picture.
        const std::size_t before = files.size();
        addFolder(path, settings, files);
        for (std::size_t i = before; i < files.size(); ++i) {
            files[i].relative = below(path.substr(skipped), files[i].relative);
        }
    }
    return files.empty() ? word + ": no picture matches this pattern" : std::string();
}

std::string addWord(const std::string& word, const InputSettings& settings,
                    std::vector<InputFile>& files) {
    if (isFolder(word)) {
        return addFolder(word, settings, files);
    }
    if (!isTaken(word) && isPattern(word)) {
        return addPattern(word, settings, files);
    }
    files.push_back({word, fileNameOf(word)});
    return {};
}

/// A path without links and detours, or as it came where there is no such file.
std::string plainPath(const std::string& path) {
    std::string resolved = resolvedPath(path);
    return resolved.empty() ? path : resolved;
}

void dropRepeated(std::vector<InputFile>& files) {
    std::set<std::string> seen;
    const auto repeated = [&seen](const InputFile& file) {
        return !seen.insert(plainPath(file.path)).second;
    };
    files.erase(std::remove_if(files.begin(), files.end(), repeated), files.end());
}

std::string withoutEnding(const std::string& path) {
    return path.substr(0, path.size() - endingOfName(path).size());
}

/// "NAME" of "NAME.restored.EXT", or an empty text.
std::string sourceOf(const std::string& path, const std::vector<std::string>& suffixes) {
    const std::string stem = withoutEnding(path);
    for (const std::string& suffix : suffixes) {
        if (!suffix.empty() && sameWord(endingOfName(stem), "." + suffix)) {
            return withoutEnding(stem);
        }
    }
    return {};
}

void dropResults(const InputSettings& settings, std::vector<InputFile>& files,
                 std::vector<std::string>& notes) {
    std::set<std::string> stems;
    for (const InputFile& file : files) {
        stems.insert(withoutEnding(file.path));
    }
    std::vector<std::string> dropped;
    const auto isResult = [&](const InputFile& file) {
        const std::string source = sourceOf(file.path, settings.suffixes);
        const bool result = !source.empty() && stems.count(source) != 0;
        if (result) {
            dropped.push_back(file.path);
        }
        return result;
    };
    files.erase(std::remove_if(files.begin(), files.end(), isResult), files.end());
    if (dropped.size() == 1) {
        notes.push_back(dropped[0] + ": is left out, being a result of orv");
    } else if (!dropped.empty()) {
        notes.push_back(std::to_string(dropped.size()) + " results of orv are left out, as " +
                        dropped[0]);
    }
}

}  // namespace

bool naturallyBefore(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t k = 0;
    while (i < a.size() && k < b.size()) {
        if (!isDigit(a[i]) || !isDigit(b[k])) {
            if (a[i] != b[k]) {
                return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[k]);
            }
            ++i;
            ++k;
            continue;
        }
        const auto number = [](std::string_view text, std::size_t& at) {
            while (at < text.size() && text[at] == '0') {
                ++at;
            }
            const std::size_t first = at;
            while (at < text.size() && isDigit(text[at])) {
                ++at;
            }
            return text.substr(first, at - first);
        };
        const std::string_view left = number(a, i);
        const std::string_view right = number(b, k);
        if (left != right) {
            return left.size() != right.size() ? left.size() < right.size() : left < right;
        }
    }
    const std::size_t restA = a.size() - i;
    const std::size_t restB = b.size() - k;
    return restA != restB ? restA < restB : a < b;
}

std::string expandInputs(const std::vector<std::string>& words, const InputSettings& settings,
                         std::vector<InputFile>& files, std::vector<std::string>& notes) {
    files.clear();
    if (words.size() == 1 && words[0] == "-") {
        files.push_back({"-", "-"});
        return {};
    }
    for (const std::string& word : words) {
        if (word == "-") {
            return "-: standard input holds one picture and stands alone; ./- is a file of "
                   "this name";
        }
        const std::string error = addWord(word, settings, files);
        if (!error.empty()) {
            return error;
        }
    }
    dropRepeated(files);
    dropResults(settings, files, notes);
    return {};
}

}  // namespace orv::cli
