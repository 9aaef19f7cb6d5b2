#include <cstdio>
#include <string>

#include "batch/batch_folder.h"
#include "batch/batch_order.h"
#include "batch/batch_plan.h"
#include "batch/batch_progress.h"
#include "batch/batch_report.h"
#include "batch/batch_summary.h"
#include "batch/stop_signal.h"
#include "batch/worker_pool.h"
#include "commands/commands.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

/// Ends as the signal asks for, once all is in order.
ExitCode endBySignal(int signal, const BatchPlan& plan) {
    const int finished = plan.count(BatchStatus::Done) + plan.count(BatchStatus::Skipped);
    std::fputs(
        ("orv: cancelled, " + std::to_string(finished) + " of " +
         std::to_string(plan.files.size()) + " pictures are done; --resume does the rest\n")
            .c_str(),
        stderr);
    StopSignal::endBy(signal);
    return ExitCode::SomeFailed;
}

void tellNotes(const BatchOrder& order, const BatchPlan& plan) {
    if (order.quiet) {
        return;
    }
    for (const std::string& text : order.warnings) {
        warn(text);
    }
    for (const std::string& text : plan.notes) {
        warn(text);
    }
}

/// The report and the last lines.
ExitCode sumUp(const BatchOrder& order, const BatchPlan& plan, const BatchFolder& folder,
               BatchProgress& progress, const StopSignal& stop) {
    const double seconds = progress.seconds();
    const std::string summary = "batch " + order.verb + ": " + countsText(plan) + ", in " +
                                durationText(seconds) + "; results in " +
                                printable(order.folder) + "\n";
    std::string error;
    if (!order.report.empty()) {
        progress.phase("writing the report");
        error = writeBatchReport(order, plan, seconds, stop);
        progress.clear();
        if (stop.received() != 0) {
            return ExitCode::SomeFailed;
        }
    }
    if (!order.quiet) {
        print(summary);
        std::fflush(stdout);
    }
    std::fputs(failuresText(plan, folder.failureList()).c_str(), stderr);
    if (!error.empty()) {
        return fail(ExitCode::Output, error);
    }
    return plan.count(BatchStatus::Failed) > 0 ? ExitCode::SomeFailed : ExitCode::Done;
}

ExitCode runBatch(const BatchOrder& order, BatchPlan& plan, BatchFolder& folder, int& signal) {
    const StopSignal stop;
    BatchProgress progress(order, plan);
    WorkerPool pool(order, plan, folder, progress, stop);
    const Failure failure = pool.run();
    if (failure) {
        progress.clear();
        return fail(failure.code, failure.text);
    }
    progress.end();
    const ExitCode code = stop.received() == 0 ? sumUp(order, plan, folder, progress, stop)
                                               : ExitCode::SomeFailed;
    signal = stop.received();
    return code;
}

}  // namespace

ExitCode batchCommand(const Verb& verb, const Words& words) {
    BatchOrder order;
    Failure failure = readBatchOrder(verb, words, order);
    if (!failure && !order.help.empty()) {
        print(order.help);
        return ExitCode::Done;
    }
    BatchPlan plan;
    if (!failure) {
        failure = planBatch(order, plan);
    }
    BatchFolder folder;
    if (!failure) {
        std::string error = reportRefusal(order);
        error = error.empty() ? folder.open(order.folder) : error;
        failure = error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
    }
    if (failure) {
        return fail(failure.code, failure.text);
    }
    if (order.resume) {
        settleFinished(order, plan);
    }
    tellNotes(order, plan);
    int signal = 0;
    const ExitCode code = runBatch(order, plan, folder, signal);
    folder.close();
    return signal == 0 ? code : endBySignal(signal, plan);
}

}  // namespace orv::cli
