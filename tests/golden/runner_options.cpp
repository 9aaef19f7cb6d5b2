#include "runner_options.h"

namespace golden {

const char kUsage[] =
    "Usage: golden_runner LIBRARY TABLE [--target generic|avx2|avx512] [--only TEXT] [--write] "
    "[--trace]\n"
    "\n"
    "Runs the cases of TABLE with the shared library LIBRARY and prints what differs.\n"
    "  --target  the highest instruction set that the library may use; 77 is returned when "
    "the\n"
    "            processor doesn't have it\n"
    "  --only    run the cases whose name holds TEXT\n"
    "  --write   print the table with what was seen instead\n"
    "  --trace   name each case on the standard error stream before it runs\n";

bool readOptions(int count, char** values, RunnerOptions& options) {
    std::string* const places[] = {&options.library, &options.table};
    std::size_t place = 0;
    for (int i = 1; i < count; ++i) {
        const std::string word = values[i];
        if (word == "--write") {
            options.write = true;
        } else if (word == "--trace") {
            options.trace = true;
        } else if ((word == "--target" || word == "--only") && i + 1 < count) {
            (word == "--only" ? options.only : options.target) = values[++i];
        } else if (word.rfind("--", 0) != 0 && place < 2) {
            *places[place++] = word;
        } else {
            return false;
        }
    }
    return place == 2 && (options.target.empty() || options.target == "generic" ||
                          options.target == "avx2" || options.target == "avx512");
}

std::string lackOf(const std::string& target) {
    if (target.empty() || target == "generic") {
        return "";
    }
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    const bool has = target == "avx2" ? __builtin_cpu_supports("avx2") != 0
                                      : __builtin_cpu_supports("avx512f") != 0 &&
                                            __builtin_cpu_supports("avx512dq") != 0 &&
                                            __builtin_cpu_supports("avx512bw") != 0 &&
                                            __builtin_cpu_supports("avx512vl") != 0;
    return has ? "" : "this processor has no " + target;
#else
    return target + " is an instruction set of x86";
#endif
}

}  // namespace golden
