#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "batch/thumbnail.h"
#include "batch/thumbnail_set.h"

namespace orv::cli {

namespace {

constexpr int kSide = 240;
/// A thumbnail is far smaller; a length beyond this is no length.
constexpr std::uint32_t kMostBytes = 4000000;

/// What a process sends: number of the picture, bytes before, bytes after, then these bytes.
using Head = std::array<std::uint32_t, 3>;

void send(int to, const void* bytes, std::size_t count) {
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t sent = write(to, from, count);
        if (sent <= 0 && errno != EINTR) {
            _exit(1);
        }
        if (sent > 0) {
            from += sent;
            count -= static_cast<std::size_t>(sent);
        }
    }
}

[[noreturn]] void makeShare(const BatchPlan& plan, const std::vector<std::size_t>& files,
                            std::size_t first, std::size_t step, int to) {
    for (std::size_t i = first; i < files.size(); i += step) {
        ThumbnailPair pair;
        makeThumbnail(plan.files[files[i]].input, kSide, pair.before);
        makeThumbnail(plan.files[files[i]].output, kSide, pair.after);
        const Head head{static_cast<std::uint32_t>(files[i]),
                        static_cast<std::uint32_t>(pair.before.size()),
                        static_cast<std::uint32_t>(pair.after.size())};
        send(to, head.data(), sizeof(head));
        send(to, pair.before.data(), pair.before.size());
        send(to, pair.after.data(), pair.after.size());
    }
    _exit(0);
}

struct Maker {
    pid_t process = -1;
    int from = -1;
    std::vector<unsigned char> bytes = {};
};

void startMaker(const BatchPlan& plan, const std::vector<std::size_t>& files, std::size_t first,
                std::size_t step, std::vector<Maker>& makers) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return;
    }
    const pid_t child = fork();
    if (child == 0) {
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
            signal(number, SIG_DFL);
        }
        close(ends[0]);
        try {
            makeShare(plan, files, first, step, ends[1]);
        } catch (...) {
            // No process but the first may go on with what a batch does at its end.
            _exit(1);
        }
    }
    close(ends[1]);
    if (child < 0) {
        close(ends[0]);
        return;
    }
    makers.push_back({child, ends[0]});
}

/// Takes the pairs that are whole out of what was received.
void takePairs(std::vector<unsigned char>& bytes, std::map<std::size_t, ThumbnailPair>& pairs) {
    Head head{};
    while (bytes.size() >= sizeof(head)) {
        std::memcpy(head.data(), bytes.data(), sizeof(head));
        if (head[1] > kMostBytes || head[2] > kMostBytes ||
            bytes.size() < sizeof(head) + head[1] + head[2]) {
            return;
        }
        const auto before = bytes.begin() + static_cast<std::ptrdiff_t>(sizeof(head));
        const auto after = before + head[1];
        const auto end = after + head[2];
        pairs[head[0]] = {{before, after}, {after, end}};
        bytes.erase(bytes.begin(), end);
    }
}

/// Reads what a maker has sent; false at its end.
bool receive(Maker& maker) {
    std::array<unsigned char, 65536> block{};
    const ssize_t count = read(maker.from, block.data(), block.size());
    if (count > 0) {
        maker.bytes.insert(maker.bytes.end(), block.begin(), block.begin() + count);
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

void end(Maker& maker, bool killed) {
    if (killed) {
        kill(maker.process, SIGKILL);
    }
    close(maker.from);
    while (waitpid(maker.process, nullptr, 0) < 0 && errno == EINTR) {
    }
    maker.from = -1;
}

}  // namespace

std::map<std::size_t, ThumbnailPair> makeThumbnails(const BatchPlan& plan,
                                                    const std::vector<std::size_t>& files,
                                                    int jobs, const StopSignal& stop) {
    std::vector<Maker> makers;
    const auto step = static_cast<std::size_t>(jobs);
    for (std::size_t first = 0; first < step && first < files.size(); ++first) {
        startMaker(plan, files, first, step, makers);
    }
    std::map<std::size_t, ThumbnailPair> pairs;
    std::size_t open = makers.size();
    while (open > 0 && stop.received() == 0) {
        std::vector<pollfd> places;
        for (const Maker& maker : makers) {
            places.push_back({maker.from, POLLIN, 0});
        }
        places.push_back({stop.descriptor(), POLLIN, 0});
        if (poll(places.data(), places.size(), -1) < 0) {
            continue;
        }
        for (std::size_t i = 0; i < makers.size(); ++i) {
            if (makers[i].from < 0 || places[i].revents == 0) {
                continue;
            }
            const bool more = receive(makers[i]);
            takePairs(makers[i].bytes, pairs);
            if (!more) {
                end(makers[i], /*killed=*/false);
                --open;
            }
        }
    }
    for (Maker& maker : makers) {
        if (maker.from >= 0) {
            end(maker, /*killed=*/true);
        }
    }
    return pairs;
}

}  // namespace orv::cli
