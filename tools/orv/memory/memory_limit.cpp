#include "memory/memory_limit.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace orv::cli {

namespace {

/// What a program may take of what is free, unless it is told.
constexpr double kDefaultShare = 0.75;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// The text of a small file of the system; empty when it can't be read.
std::string textOf(const std::string& path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "r"));
    std::string text;
    std::array<char, 4096> block{};
    std::size_t got = 0;
    while (file != nullptr &&
           (got = std::fread(block.data(), 1, block.size(), file.get())) > 0) {
        text.append(block.data(), got);
    }
    return text;
}

/// The number after a key in a text of lines; nothing when the key or the number is missing, as
/// in "max".
std::optional<double> numberAfter(const std::string& text, const std::string& key) {
    const std::size_t at = key.empty() ? 0 : text.find(key);
    if (at == std::string::npos) {
        return std::nullopt;
    }
    const char* const from = text.c_str() + at + key.size();
    char* end = nullptr;
    const double number = std::strtod(from, &end);
    return end == from ? std::nullopt : std::optional<double>(number);
}

/// What a control group still allows; pages of files that can be dropped count as free.
std::optional<double> freeInGroup(const std::string& folder, const std::string& limitFile,
                                  const std::string& usageFile,
                                  const std::string& inactiveKey) {
    const std::optional<double> limit = numberAfter(textOf(folder + limitFile), "");
    const std::optional<double> used = numberAfter(textOf(folder + usageFile), "");
    if (!limit || !used) {
        return std::nullopt;
    }
    const double files =
        numberAfter("\n" + textOf(folder + "/memory.stat"), "\n" + inactiveKey + " ")
            .value_or(0.0);
    return std::max(0.0, *limit - std::max(0.0, *used - files));
}

/// The folder of this process in a line of /proc/self/cgroup such as "0::/a/b" or
/// "4:memory:/a/b"; "/" when there is none.
std::string groupOf(const std::string& groups, const std::string& controller) {
    const std::size_t at = ("\n" + groups).find(controller);
    if (at == std::string::npos) {
        return "/";
    }
    const std::size_t from = at + controller.size() - 1;
    return groups.substr(from, groups.find('\n', from) - from);
}

void takeLess(std::optional<double>& least, std::optional<double> other) {
    if (other && (!least || *other < *least)) {
        least = other;
    }
}

/// The least that a group and all groups above it allow.
template <class Free>
void takeGroups(std::optional<double>& least, std::string group, Free freeIn) {
    while (true) {
        takeLess(least, freeIn(group == "/" ? std::string() : group));
        if (group.size() < 2) {
            return;
        }
        group.resize(std::max<std::size_t>(1, group.find_last_of('/')));
    }
}

/// What "M", "MB" or "MiB" multiplies, and likewise for K, G and T; 0 for what is no unit.
double factorOf(std::string_view unit) {
    if (unit.empty() || unit == "B") {
        return 1.0;
    }
    constexpr std::string_view kPrefixes = "KMGT";
    const char letter = unit[0] == 'k' || unit[0] == 'm' || unit[0] == 'g' || unit[0] == 't'
                            ? static_cast<char>(unit[0] - 'a' + 'A')
                            : unit[0];
    const std::size_t prefix = kPrefixes.find(letter);
    const std::string_view rest = unit.substr(1);
    if (prefix == kPrefixes.npos || (!rest.empty() && rest != "B" && rest != "iB")) {
        return 0.0;
    }
    return std::pow(rest == "iB" ? 1024.0 : 1000.0, static_cast<double>(prefix + 1));
}

std::string notASize(std::string_view text) {
    return "--max-memory: '" + std::string(text) +
           "' is not a size (expected a size such as 2G, 500M or 75%)";
}

/// Parameters of the diffusion methods that lighten a run, the one that changes least first.
constexpr std::array<std::array<std::string_view, 2>, 2> kLighter{
    {{"solver", "CG"}, {"scheme", "AOS"}}};

/// "--solver CG" and the like, the first of them with which the job fits; empty when none does.
std::string lighterParameter(const std::vector<Step>& steps, const JobShape& shape,
                             double limit) {
    for (const auto& [name, value] : kLighter) {
        std::vector<Step> changed = steps;
        bool known = false;
        for (Step& step : changed) {
            known = step.arguments.set(name, value).empty() || known;
        }
        if (known && jobBytes(changed, shape) <= limit) {
            return "--" + std::string(name) + " " + std::string(value);
        }
    }
    return {};
}

}  // namespace

void returnFreedMemory() {
#ifdef __GLIBC__
    // Else the allocator keeps ever larger freed blocks, up to 32 MB each.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
#endif
}

std::optional<double> availableMemoryBelow(const std::string& root) {
    std::optional<double> least = numberAfter(textOf(root + "proc/meminfo"), "MemAvailable:");
    if (least) {
        *least *= 1024.0;
    }
    const std::string groups = textOf(root + "proc/self/cgroup");
    const std::string tree = root + "sys/fs/cgroup";
    takeGroups(least, groupOf(groups, "\n0::"), [&](const std::string& group) {
        return freeInGroup(tree + group, "/memory.max", "/memory.current", "inactive_file");
    });
    takeGroups(least, groupOf(groups, ":memory:"), [&](const std::string& group) {
        return freeInGroup(tree + "/memory" + group, "/memory.limit_in_bytes",
                           "/memory.usage_in_bytes", "total_inactive_file");
    });
    return least;
}

std::string readMemorySize(std::string_view text, std::optional<double> available,
                           std::optional<double>& limit) {
    limit.reset();
    if (text.empty()) {
        if (available) {
            limit = kDefaultShare * *available;
        }
        return {};
    }
    const char* const end = text.data() + text.size();
    double number = 0.0;
    const auto [stop, problem] =
        std::from_chars(text.data(), end, number, std::chars_format::fixed);
    if (problem != std::errc() || !std::isfinite(number) || number <= 0.0) {
        return notASize(text);
    }
    const std::string_view unit(stop, static_cast<std::size_t>(end - stop));
    if (unit == "%" && number > 100.0) {
        return "--max-memory: '" + std::string(text) + "' is more than all there is";
    }
    if (unit == "%") {
        if (available) {
            limit = number / 100.0 * *available;
        }
        return {};
    }
    const double factor = factorOf(unit);
    if (factor == 0.0) {
        return notASize(text);
    }
    limit = number * factor;
    return {};
}

std::string memoryRefusal(const std::string& input, const std::vector<Step>& steps,
                          const JobShape& shape, std::optional<double> limit) {
    if (!limit) {
        return {};
    }
    const double needed = jobBytes(steps, shape);
    if (needed <= *limit) {
        return {};
    }
    const std::string lighter = lighterParameter(steps, shape, *limit);
    std::string ways = lighter.empty() ? "" : lighter + " or ";
    const int side = largestSide(steps, shape, *limit);
    if (side > 0) {
        ways += "--max-side " + std::to_string(side) + " or ";
    }
    return input + ": needs " + memoryText(needed) + " of memory for " +
           std::to_string(shape.picture.width) + " x " + std::to_string(shape.picture.height) +
           " pixels, and may take " + memoryText(*limit) + "; take " + ways + "--max-memory " +
           std::to_string(static_cast<long>(std::ceil(needed / 1e6))) + "M";
}

std::string memoryText(double bytes) {
    std::array<char, 32> text{};
    if (bytes < 999.5e6) {
        std::snprintf(text.data(), text.size(), "%.0f MB", std::max(1.0, bytes / 1e6));
    } else {
        std::snprintf(text.data(), text.size(), "%.1f GB", bytes / 1e9);
    }
    return text.data();
}

}  // namespace orv::cli
