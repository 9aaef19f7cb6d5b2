#pragma once

#include "exports/progress_window.h"

namespace orv::test {

/// Sets the progress window for a test and puts the old one back.
class ProgressRange {
  public:
    ProgressRange(int low, int high) : before_(progressWindow()) {
        progressWindow() = ProgressWindow{nullptr, low, high};
    }
    ~ProgressRange() { progressWindow() = before_; }
    ProgressRange(const ProgressRange&) = delete;
    ProgressRange& operator=(const ProgressRange&) = delete;

  private:
    ProgressWindow before_;
};

}  // namespace orv::test
