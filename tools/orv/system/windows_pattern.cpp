#include <windows.h>

#include <cstddef>
#include <string>

#include "system/file_system.h"
#include "system/windows_text.h"

namespace orv::cli {

namespace {

/// Whether a character is in a set whose '[' stands before `at`; `at` goes behind the set, or to
/// npos where the set has no end.
bool isInSet(const std::wstring& pattern, std::size_t& at, wchar_t c) {
    const bool inverted = at < pattern.size() && (pattern[at] == L'!' || pattern[at] == L'^');
    at += inverted ? 1 : 0;
    bool found = false;
    for (const std::size_t first = at; at < pattern.size(); ++at) {
        if (pattern[at] == L']' && at > first) {
            ++at;
            return found != inverted;
        }
        const wchar_t low = pattern[at];
        wchar_t high = low;
        if (at + 2 < pattern.size() && pattern[at + 1] == L'-' && pattern[at + 2] != L']') {
            high = pattern[at + 2];
            at += 2;
        }
        found = found || (low <= c && c <= high);
    }
    at = std::wstring::npos;
    return false;
}

/// Whether one character fits the part of a pattern at `at`, which goes behind that part.
bool fitsOne(const std::wstring& pattern, std::size_t& at, wchar_t c) {
    const wchar_t part = pattern[at++];
    if (part == L'[') {
        std::size_t end = at;
        const bool inside = isInSet(pattern, end, c);
        if (end != std::wstring::npos) {
            at = end;
            return inside;
        }
    }
    return part == L'?' || part == c;
}

/// Goes along both; after a mismatch the last star takes one character more.
bool fits(const std::wstring& pattern, const std::wstring& name) {
    std::size_t at = 0;
    std::size_t i = 0;
    std::size_t star = std::wstring::npos;
    std::size_t taken = 0;
    while (i < name.size()) {
        std::size_t next = at;
        if (at < pattern.size() && pattern[at] == L'*') {
            star = ++at;
            taken = i;
        } else if (at < pattern.size() && fitsOne(pattern, next, name[i])) {
            at = next;
            ++i;
        } else if (star != std::wstring::npos) {
            at = star;
            i = ++taken;
        } else {
            return false;
        }
    }
    while (at < pattern.size() && pattern[at] == L'*') {
        ++at;
    }
    return at == pattern.size();
}

}  // namespace

bool fitsPattern(const std::string& pattern, const std::string& name, bool /*anyCase*/) {
    // Names of Windows don't tell cases apart.
    std::wstring a = wideText(pattern);
    std::wstring b = wideText(name);
    CharLowerBuffW(a.data(), static_cast<DWORD>(a.size()));
    CharLowerBuffW(b.data(), static_cast<DWORD>(b.size()));
    const bool hidden = !b.empty() && b[0] == L'.';
    return (!hidden || (!a.empty() && a[0] == L'.')) && fits(a, b);
}

}  // namespace orv::cli
