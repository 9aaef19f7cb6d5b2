#include "batch/time_left.h"

#include <algorithm>

namespace orv::cli {

namespace {

/// Starting a process and opening files cost about as much as this many bytes of JPEG.
constexpr double kStartBytes = 20000.0;
/// A running picture tells about its speed from this share on.
constexpr double kEnoughShare = 0.1;

}  // namespace

void TimeLeft::add(const std::string& ending, double bytes) {
    works_.push_back({ending.empty() ? "." : ending, bytes + kStartBytes});
}

void TimeLeft::start(std::size_t picture, double now) {
    works_[picture].started = now;
    works_[picture].share = 0.0;
}

void TimeLeft::advance(std::size_t picture, double share) {
    works_[picture].share = std::clamp(share, works_[picture].share, 1.0);
}

void TimeLeft::postpone(std::size_t picture) {
    works_[picture].started = -1.0;
    works_[picture].share = 0.0;
}

void TimeLeft::finish(std::size_t picture, double now, bool told) {
    Work& work = works_[picture];
    if (told && work.started >= 0.0) {
        speeds_[work.ending].seconds += now - work.started;
        speeds_[work.ending].weight += work.weight;
    }
    work.share = 1.0;
    work.finished = true;
}

double TimeLeft::doneShare() const {
    double all = 0.0;
    double done = 0.0;
    for (const Work& work : works_) {
        all += work.weight;
        done += work.weight * work.share;
    }
    return all > 0.0 ? done / all : 1.0;
}

/// The speed of each ending; where nothing is known of one, that of all, under an empty name.
TimeLeft::Speeds TimeLeft::speedsNow(double now) const {
    Speeds running;
    for (const Work& work : works_) {
        if (!work.finished && work.share >= kEnoughShare) {
            running[work.ending].seconds += now - work.started;
            running[work.ending].weight += work.weight * work.share;
        }
    }
    Speeds speeds = speeds_;
    speeds.insert(running.begin(), running.end());
    Speed all;
    for (const auto& [ending, speed] : speeds) {
        all.seconds += speed.seconds;
        all.weight += speed.weight;
    }
    // No ending is empty here: pictures without one are entered as ".".
    speeds[""] = all;
    return speeds;
}

double TimeLeft::secondsOfRest(const Work& work, const Speeds& speeds, double now) {
    const bool running = work.started >= 0.0;
    if (running && work.share >= kEnoughShare) {
        return (now - work.started) * (1.0 - work.share) / work.share;
    }
    const auto known = speeds.find(work.ending);
    const Speed speed = known != speeds.end() ? known->second : speeds.at("");
    if (speed.weight <= 0.0) {
        return -1.0;
    }
    const double whole = work.weight * speed.seconds / speed.weight;
    // A picture that is late says no more than that it isn't done.
    return running ? std::max(whole - (now - work.started), 0.1 * whole) : whole;
}

double TimeLeft::secondsLeft(double now) const {
    const Speeds speeds = speedsNow(now);
    double sum = 0.0;
    double longest = 0.0;
    for (const Work& work : works_) {
        if (work.finished) {
            continue;
        }
        const double rest = secondsOfRest(work, speeds, now);
        if (rest < 0.0) {
            return -1.0;
        }
        sum += rest;
        longest = std::max(longest, rest);
    }
    return std::max(sum / jobs_, longest);
}

}  // namespace orv::cli
