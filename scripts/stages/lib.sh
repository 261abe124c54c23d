# What the stages share: building a preset and running its tests, with a count of the outcome.

# build_preset PRESET [cmake options]
build_preset() {
    local preset=$1
    shift
    cmake --preset "$preset" -DCORVMO_WARNINGS_AS_ERRORS=ON "$@" >"build/$preset-configure.log" 2>&1 ||
        { cat "build/$preset-configure.log"; return 1; }
    cmake --build --preset "$preset" >"build/$preset-build.log" 2>&1 ||
        { grep -E 'error|warning|FAILED' -A 6 "build/$preset-build.log" | head -n 60; return 1; }
}

# run_ctest PRESET: runs the tests and counts them.
run_ctest() {
    local log=build/$1-ctest.log total failed status=0
    ctest --preset "$1" -j 2 >"$log" 2>&1 || status=1
    total=$(sed -n 's/.*tests failed out of \([0-9]*\).*/\1/p' "$log" | tail -n 1)
    failed=$(sed -n 's/.* \([0-9]*\) tests failed out of.*/\1/p' "$log" | tail -n 1)
    if [ -z "$total" ] || [ "$total" -eq 0 ]; then
        tail -n 20 "$log"
        echo "no test was run"
        return 1
    fi
    echo "passed $((total - failed))" >>"$CORVMO_COUNTS"
    echo "failed $failed" >>"$CORVMO_COUNTS"
    if [ "$status" -ne 0 ]; then
        grep -vE '^ *[0-9]+/[0-9]+ Test .*Passed' "$log" | tail -n 150
    fi
    tail -n 5 "$log" | grep 'tests passed'
    return $status
}
