# shellcheck shell=bash
# Counts what a script of tests has checked; to be sourced. `area` names the script in what it
# prints, `log` takes what a check says.

passed=0
failed=0
skipped=0

# check NAME COMMAND...: each counts as one; quiet when it passes.
check() {
    local name=$1
    shift
    if "$@" >"$log" 2>&1 </dev/null; then
        passed=$((passed + 1))
        return 0
    fi
    failed=$((failed + 1))
    echo "$area $name: FAILED"
    tail -n 40 "$log"
    return 1
}

# skip NAME REASON
skip() {
    skipped=$((skipped + 1))
    echo "$area $1: skipped: $2"
}

# add_count LINE: adds a line such as "3 passed, 0 failed, 1 skipped"; false for any other.
add_count() {
    if ! [[ $1 =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed(,\ ([0-9]+)\ skipped)?$ ]]; then
        return 1
    fi
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
    skipped=$((skipped + ${BASH_REMATCH[4]:-0}))
}

# finish: prints the count and ends the script by it.
finish() {
    echo "$passed passed, $failed failed, $skipped skipped"
    [ "$failed" -eq 0 ]
    exit
}
