#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options/verb.h"
#include "pipeline/step_runner.h"
#include "terminal/progress_style.h"

namespace orv::cli {

/// What a command line `orv batch VERB IN... -o DIR [options]` asks for.
struct BatchOrder {
    std::string verb;          ///< "restore", "run"
    Words inputs;              ///< files, folders and patterns
    std::string folder;        ///< DIR
    std::vector<Words> parts;  ///< verb and options of each step, as a worker is given them
    std::string recipe;        ///< the recipe that workers replay, for the verb run
    std::string request;  ///< what is done to each picture, the same text for the same work
    std::string format;   ///< as --format has it, or empty
    std::string name;     ///< as --name has it, or empty
    std::vector<std::string> include;
    std::string report;  ///< file to write, or empty
    std::optional<double>
        memory;           ///< bytes that all workers may use together, if that is known
    std::string command;  ///< the whole command as the user typed it
    std::vector<std::string> warnings;  ///< what a user should know of the steps
    int jobs = 1;
    bool recursive = false;
    bool resume = false;
    bool force = false;
    bool quiet = false;
    ProgressStyle progress = ProgressStyle::Automatic;
    std::string help;  ///< the help that is asked for; then nothing else is told
};

/// Reads the words that follow "batch", and checks them as the verb itself does.
///
/// Fails:   with one line.
Failure readBatchOrder(const Verb& batch, const Words& words, BatchOrder& order);

}  // namespace orv::cli
