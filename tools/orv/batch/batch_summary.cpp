#include "batch/batch_summary.h"

#include <cstddef>

#include "messages.h"

namespace orv::cli {

namespace {

/// So many failures are listed, and lists of so many pictures still stand on the screen.
constexpr std::size_t kListed = 20;

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
    const bool again = plan.files.size() > kListed;
    std::string text = "orv: " + std::to_string(failed) + " of " +
                       std::to_string(plan.files.size()) +
                       (plan.files.size() == 1 ? " picture" : " pictures") +
                       " failed; --resume tries " +
                       (failed == 1 ? "it" : "them") + " again" + (again ? ":\n" : "\n");
    std::size_t listed = 0;
    for (const BatchFile& file : plan.files) {
        if (again && file.status == BatchStatus::Failed && listed < kListed) {
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
