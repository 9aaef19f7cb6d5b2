#include "batch/batch_summary.h"

#include <cstddef>

#include "terminal/messages.h"

namespace orv::cli {

namespace {

/// Which of the failures another run may mend.
std::string retryHint(const BatchPlan& plan, int failed) {
    int refused = 0;
    for (const BatchFile& file : plan.files) {
        refused += file.refused ? 1 : 0;
    }
    if (refused == failed) {
        return {};
    }
    return refused > 0   ? "; --resume tries those again that weren't refused"
           : failed == 1 ? "; --resume tries it again"
                         : "; --resume tries them again";
}

}  // namespace

std::string countsText(const BatchPlan& plan) {
    std::string text = std::to_string(plan.count(BatchStatus::Done)) + " done";
    const int skipped = plan.count(BatchStatus::Skipped);
    const int failed = plan.count(BatchStatus::Failed);
    text += skipped > 0 ? ", " + std::to_string(skipped) + " skipped" : "";
    return text + (failed > 0 ? ", " + std::to_string(failed) + " failed" : "");
}

std::string failuresText(const BatchPlan& plan, const std::string& list) {
    const int failed = plan.count(BatchStatus::Failed);
    if (failed == 0) {
        return {};
    }
    const bool again = plan.files.size() > kListedFailures;
    std::string text = "orv: " + std::to_string(failed) + " of " +
                       std::to_string(plan.files.size()) +
                       (plan.files.size() == 1 ? " picture" : " pictures") + " failed" +
                       retryHint(plan, failed) + (again ? ":\n" : "\n");
    std::size_t listed = 0;
    for (const BatchFile& file : plan.files) {
        if (again && file.status == BatchStatus::Failed && listed < kListedFailures) {
            ++listed;
            text += "  " + printable(file.input + ": " + file.reason) + "\n";
        }
    }
    const std::size_t more = static_cast<std::size_t>(failed) - listed;
    if (again && more > 0) {
        text += "  and " + std::to_string(more) + " more, all in " + printable(list) + "\n";
    }
    return text;
}

}  // namespace orv::cli
