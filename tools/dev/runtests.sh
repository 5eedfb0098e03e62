# Runs tests of ctest and of node, and adds up what passed and what failed. Part of ./dev, which sets
# `jobs`, how many run side by side, and has step(), which says what begins.
# shellcheck shell=bash

: "${jobs:?}"

passed=0
failed=0
# The failed tests with the reasons, and those that failed only at first: repeated at the end of the output.
broken=()
flaky=()

# "N% tests passed, F tests failed out of T" in ctest's output on stdin, as "F T". Fails without it.
ctest_count() {
    sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests? failed out of ([0-9]+)$/\1 \2/p' | grep .
}

# Names in ctest's list of what failed, on stdin.
ctest_failed() { sed -nE 's/^\t *[0-9]+ - ([^ ]+) \(.*/\1/p'; }

# run_ctest PRESET OPTION...: failed tests are rerun one by one, and count only if they fail again: tests
# that start programs and wait for them share two cores, and a slow machine is no defect.
run_ctest() {
    local preset=$1 log bad total name again still=()
    shift
    step "Testing $preset"
    log=$(mktemp)
    ctest --preset "$preset" -j "$jobs" "$@" 2>&1 | tee "$log" || true
    if ! read -r bad total < <(ctest_count <"$log"); then
        bad=1 total=1 # ctest itself failed, or there was nothing to run
        broken+=("$preset: ctest ran no test")
    elif [ "$bad" -gt 0 ]; then
        mapfile -t again < <(ctest_failed <"$log")
        step "Testing again in $preset: ${again[*]}"
        ctest --preset "$preset" --rerun-failed 2>&1 | tee "$log" || true
        read -r bad _ < <(ctest_count <"$log") || bad=${#again[@]}
        mapfile -t still < <(ctest_failed <"$log")
        for name in "${again[@]}"; do
            if [[ " ${still[*]} " == *" $name "* ]]; then broken+=("$preset: $name"); else
                flaky+=("$preset: $name")
            fi
        done
    fi
    rm -f "$log"
    passed=$((passed + total - bad))
    failed=$((failed + bad))
}

# node_test LOG FILE OPTION...: each line of the output begins with the file's name. Runs with the command
# prefix in the array own_system, if any.
own_system=()
node_test() {
    "${own_system[@]}" node --test --test-reporter=tap "${@:3}" "$2" 2>&1 |
        sed -u "s|^|$(basename "$2" .test.mjs): |" | tee "$1" || true
}

# The summary lines "# pass N", "# fail N", "# cancelled N" of node_test's output on stdin, as
# "PASSED FAILED". A file that crashes has none, and has failed.
node_count() {
    awk '$2 == "#" && $3 == "pass" { good += $4; ++ended }
         $2 == "#" && ($3 == "fail" || $3 == "cancelled") { bad += $4 }
         END { print good + 0, bad + (ended ? 0 : 1) }'
}

# The names of the failed tests in node_test's output, from the file LOG.
node_failed() { grep -E '^[a-z]+: +not ok ' "$1" || echo "$(basename "$1") broke off"; }

# run_node_tests NAME FILE...: the tests whose name contains NAME, with as many files in parallel as there
# are processors. A file with a failed test is rerun by itself, as in run_ctest.
run_node_tests() {
    local filter=() logs file log first good bad any=0
    [ -z "$1" ] || filter=(--test-name-pattern "$1")
    shift
    logs=$(mktemp -d)
    for file in "$@"; do
        [ "$(jobs -rp | wc -l)" -lt "$jobs" ] || wait -n
        node_test "$logs/$(basename "$file")" "$file" "${filter[@]}" &
    done
    wait
    for file in "$@"; do
        log=$logs/$(basename "$file")
        read -r good bad < <(node_count <"$log")
        if [ "$bad" -gt 0 ]; then
            first=$(node_failed "$log")
            step "Testing again: $file"
            node_test "$log" "$file" "${filter[@]}"
            read -r good bad < <(node_count <"$log")
            if [ "$bad" -eq 0 ]; then flaky+=("$first"); else broken+=("$(node_failed "$log")"); fi
        fi
        any=$((any + good + bad))
        passed=$((passed + good))
        failed=$((failed + bad))
    done
    rm -rf "$logs"
    if [ "$any" -eq 0 ]; then
        failed=$((failed + 1))
        broken+=("no test of that name")
    fi
}
