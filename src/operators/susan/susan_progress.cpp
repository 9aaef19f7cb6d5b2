#include "operators/susan/susan_progress.h"

#include "exports/progress_window.h"

namespace orv {

SusanProgress::SusanProgress(int pass, int iterations, int columns)
    : pass_(pass), iterations_(iterations), columns_(columns) {
    reportProgress(static_cast<int>(100LL * pass / iterations));
}

void SusanProgress::columnsBelow(int end) {
    if (progressWindow().callback == nullptr) {
        return;
    }
    for (; reported_ < end && reported_ < columns_; ++reported_) {
        const long long all = static_cast<long long>(iterations_) * columns_;
        reportProgress(static_cast<int>(100LL * reported_ / all + 100LL * pass_ / iterations_));
    }
}

}  // namespace orv
