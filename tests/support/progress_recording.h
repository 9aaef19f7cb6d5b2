#pragma once

#include <vector>

#include "orv/orv.h"

namespace orv::test {

/// Records what the engine reports while it lives and leaves reporting off.
///
/// Units:   the values of the callback; the reporting range starts at 0 to 100.
class ProgressRecording {
  public:
    ProgressRecording() {
        values().clear();
        reset();
    }
    ~ProgressRecording() { SetORVCallBack(nullptr); }
    ProgressRecording(const ProgressRecording&) = delete;
    ProgressRecording& operator=(const ProgressRecording&) = delete;

    /// Sets the reporting range back to 0 to 100.
    void reset() { SetORVCallBack(record); }

    /// What was reported since the last call.
    std::vector<int> take() {
        std::vector<int> taken;
        taken.swap(values());
        return taken;
    }

  private:
    static std::vector<int>& values() {
        static std::vector<int> recorded;
        return recorded;
    }
    static void ORV_CALLBACK record(int value) { values().push_back(value); }
};

}  // namespace orv::test
