#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace orv::cli {

/// Reckons how much of a batch is done and how long the rest will take.
///
/// The work of a picture is taken to grow with the bytes of its file, at a speed that each
/// ending has for itself: a byte of JPEG holds far more pixels than one of TIFF. The speeds are
/// measured on the pictures that are done, and on those that run once they tell their progress.
class TimeLeft {
  public:
    /// `jobs` pictures run at a time.
    explicit TimeLeft(int jobs) : jobs_(jobs) {}

    /// Adds a picture that is to be done.
    ///
    /// Units:   bytes of its file.
    void add(const std::string& ending, double bytes);

    // The moments of a picture, by the order in which it was added. Units: `now` in seconds.
    void start(std::size_t picture, double now);
    void advance(std::size_t picture, double share);
    /// It goes back among those that wait.
    void postpone(std::size_t picture);
    /// `told` says whether its time tells about others, which that of a failure doesn't.
    void finish(std::size_t picture, double now, bool told);

    /// The share of the work that is done, 0 to 1.
    double doneShare() const;

    /// Seconds until all is done, or -1 while that would be a guess.
    double secondsLeft(double now) const;

  private:
    struct Work {
        std::string ending;
        double weight = 0.0;
        double started = -1.0;  // below 0: not yet
        double share = 0.0;
        bool finished = false;
    };
    /// Seconds that so much weight took.
    struct Speed {
        double seconds = 0.0;
        double weight = 0.0;
    };

    using Speeds = std::map<std::string, Speed>;

    Speeds speedsNow(double now) const;
    static double secondsOfRest(const Work& work, const Speeds& speeds, double now);

    int jobs_;
    std::vector<Work> works_;
    Speeds speeds_;  // of what is done
};

}  // namespace orv::cli
