# shellcheck shell=bash
# Set-up that run, test and .ci/run share; to be sourced. Everything it says goes to standard
# error, so that the tool's standard output stays clean.

orv_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What the library and the tool need, what the tests need besides, what CI needs besides.
orv_run_packages=(g++ cmake ninja-build pkg-config libvips-dev libcli11-dev
    nlohmann-json3-dev libxxhash-dev python3)
orv_test_packages=("${orv_run_packages[@]}" libgtest-dev libeigen3-dev)
orv_ci_packages=("${orv_test_packages[@]}" libbenchmark-dev ccache clang clang-format valgrind
    imagemagick mandoc zsh fish abigail-tools)

# Not empty after packages were installed, by a script that called this one too.
orv_reconfigure=${orv_reconfigure:-}

orv_say() {
    printf '%s\n' "$*" >&2
}

orv_fail() {
    orv_say "$@"
    exit 1
}

# orv_as_root COMMAND...: runs it as root, through sudo where that is needed.
orv_as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        return 127
    fi
}

# orv_missing PACKAGE...: prints those that are not installed.
orv_missing() {
    local installed package
    # dpkg-query exits with 1 when it does not know one of the names.
    installed=" $(dpkg-query -W -f '${db:Status-Status}:${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^installed://p' | tr '\n' ' ' || true) "
    for package in "$@"; do
        case $installed in
            *" $package "*) ;;
            *) printf '%s\n' "$package" ;;
        esac
    done
}

# Without Debian's packages nothing is installed: it says what is needed and goes on if it is
# there.
orv_need_elsewhere() {
    local lacking=()
    command -v c++ >/dev/null || lacking+=("a C++20 compiler (GCC 12 or Clang 14 and later)")
    command -v cmake >/dev/null || lacking+=("CMake 3.25 or later")
    command -v ninja >/dev/null || lacking+=("Ninja")
    if ! command -v pkg-config >/dev/null; then
        lacking+=("pkg-config")
    elif ! pkg-config --exists vips; then
        lacking+=("libvips with its headers")
    fi
    if [ ${#lacking[@]} -gt 0 ]; then
        orv_say "This is not a Debian system, so nothing is installed here. Please install:"
        printf '  - %s\n' "${lacking[@]}" "CLI11, nlohmann-json and xxHash (headers)" \
            "Python 3" "for the tests: GoogleTest and Eigen 3.4" >&2
        exit 1
    fi
}

# orv_need PACKAGE...: installs what is missing, and says first what and how much.
orv_need() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        orv_need_elsewhere
        return
    fi
    local missing=()
    mapfile -t missing < <(orv_missing "$@")
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    local install=(apt-get install -y --no-install-recommends)
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        orv_fail "These packages are missing; please install them as root:" \
            "apt-get install --no-install-recommends ${missing[*]}"
    fi

    local log="$orv_root/build/log/packages.log"
    mkdir -p "$(dirname "$log")"
    orv_say "Missing packages: ${missing[*]}"
    orv_logged "$log" orv_as_root env DEBIAN_FRONTEND=noninteractive apt-get update
    # --assume-no prints the plan and stops; it then exits with 1.
    (LC_ALL=C apt-get install --assume-no --no-install-recommends "${missing[@]}" \
        </dev/null 2>/dev/null || true) |
        sed -n -e 's/^\([0-9]*\) upgraded, \([0-9]*\) newly.*/Installing \2 packages, upgrading \1:/p' \
            -e 's/^Need to get \(.*\) of archives\.$/  \1 to download/p' \
            -e 's/^After this operation, \(.*\) of additional disk space.*/  \1 on disk/p' >&2
    orv_logged "$log" orv_as_root env DEBIAN_FRONTEND=noninteractive "${install[@]}" "${missing[@]}"
    # A build that was configured before has not seen the new packages.
    export orv_reconfigure=yes
}

# orv_know_archives: fetches apt's lists of packages where they were thrown away, as in images that
# hold all that is needed.
orv_know_archives() {
    if [ -z "$(apt-get indextargets 'Created-By: Packages' 'Origin: Debian' 2>/dev/null)" ]; then
        orv_as_root apt-get update >/dev/null 2>&1 </dev/null || true
    fi
}

# orv_logged LOG COMMAND...: runs it quietly; when it fails, shows the end of the log and stops.
orv_logged() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 40 "$log" >&2
        orv_fail "Failed: $*" "The whole log is in $log"
    fi
}

# orv_watched LOG COMMAND...: orv_logged for a long build; a terminal is shown how far it is.
orv_watched() {
    local log=$1 build
    shift
    if [ ! -t 2 ]; then
        orv_logged "$log" "$@"
        return
    fi
    "$@" >"$log" 2>&1 </dev/null &
    build=$!
    # A job in the background does not hear the terminal's Ctrl-C.
    trap 'kill "$build" 2>/dev/null; exit 130' INT TERM
    while kill -0 "$build" 2>/dev/null; do
        printf '\r  %s ' "$(sed -n 's/^\(\[[0-9]*\/[0-9]*\]\).*/\1/p' "$log" | tail -n 1)" >&2
        sleep 0.5
    done
    trap - INT TERM
    printf '\r\033[K' >&2
    if ! wait "$build"; then
        tail -n 40 "$log" >&2
        orv_fail "Failed: $*" "The whole log is in $log"
    fi
}

# orv_build PRESET [TARGET...]: configures once and builds, one caller at a time.
orv_build() {
    local preset=$1
    shift
    local folder="$orv_root/build/$preset"
    local log="$orv_root/build/log/$preset"
    mkdir -p "$folder" "$orv_root/build/log"
    exec 9>"$folder/.lock"
    flock 9 2>/dev/null || true
    if [ ! -f "$folder/build.ninja" ] || [ -n "$orv_reconfigure" ]; then
        orv_say "Building ($preset) in $folder: once, some minutes." \
            "The log is in $log-build.log"
        (cd "$orv_root" && orv_logged "$log-configure.log" cmake --preset "$preset")
    fi
    local targets=()
    if [ $# -gt 0 ]; then
        targets=(--target "$@")
    fi
    orv_watched "$log-build.log" cmake --build "$folder" "${targets[@]}"
    exec 9>&-
}

# orv_ctest FOLDER [OPTION...]: runs the tests of a build and sets orv_passed, orv_failed and
# orv_skipped.
# A failed test prints its output, one that passes nothing.
orv_ctest() {
    local folder=$1
    shift
    local report="$folder/ctest.xml"
    rm -f "$report"
    ctest --test-dir "$folder" --output-on-failure --parallel "$(nproc)" \
        --output-junit "$report" "$@" |
        grep -vE '^ +Start +[0-9]+: | +Passed +[0-9.]+ sec *$' || true
    local head total failed skipped disabled
    if [ ! -f "$report" ]; then
        orv_passed=0
        orv_failed=1
        orv_skipped=0
        return
    fi
    head=$(tr '\n\t' '  ' <"$report" | sed 's/<testcase.*//')
    total=$(orv_attribute tests "$head")
    failed=$(orv_attribute failures "$head")
    skipped=$(orv_attribute skipped "$head")
    disabled=$(orv_attribute disabled "$head")
    orv_failed=$failed
    orv_skipped=$((skipped + disabled))
    orv_passed=$((total - failed - orv_skipped))
    # A run without a single test has proved nothing.
    if [ "$orv_passed" -eq 0 ] && [ "$orv_failed" -eq 0 ]; then
        orv_failed=1
    fi
}

# orv_attribute NAME TEXT: the number in NAME="..."; 0 without one.
orv_attribute() {
    local value
    value=$(sed -n "s/.* $1=\"\([0-9]*\)\".*/\1/p" <<<"$2")
    printf '%s' "${value:-0}"
}
