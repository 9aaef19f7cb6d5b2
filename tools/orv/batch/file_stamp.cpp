#include "batch/file_stamp.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

#include "system/file_system.h"

namespace orv::cli {

bool readStamp(const std::string& path, FileStamp& stamp) {
    FileState state;
    if (!readState(path, state) || state.kind != FileKind::Regular) {
        return false;
    }
    namespace time = std::chrono;
    const time::sys_seconds changed{time::seconds(state.seconds)};
    const auto midnight = time::floor<time::days>(changed);
    const time::year_month_day day(midnight);
    const time::hh_mm_ss clock(changed - midnight);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%09ldZ",
                  static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), state.nanoseconds);
    stamp.bytes = state.bytes;
    stamp.modified = text.data();
    return true;
}

}  // namespace orv::cli
