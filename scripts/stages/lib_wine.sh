# What the stages share that run Windows programs: Wine itself, and a program's tests under it.

# need_wine WHAT: Wine and its prefix are there afterwards. Without Wine the stage is skipped, unless CI or
# CORVMO_REQUIRE_WINE=1 asks for it.
need_wine() {
    local reason
    if ! reason=$(scripts/install_wine 2>&1); then
        skip_or_fail "$1" "$(printf '%s\n' "$reason" | tail -n 1)"
    fi
    export WINEARCH=win32 WINEPREFIX=$PWD/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    if ! timeout 300 wineboot -i >build/wine-prefix.log 2>&1 </dev/null; then
        tail -n 20 build/wine-prefix.log
        echo "Wine cannot make its prefix build/wine"
        exit 1
    fi
}

# skip_or_fail WHAT REASON: ends the stage.
skip_or_fail() {
    if [ "${CI-}" = true ] || [ "${CORVMO_REQUIRE_WINE-}" = 1 ]; then
        echo "$1 cannot run: $2"
        exit 1
    fi
    echo "Skipped: $1 under Wine. $2"
    echo "passed 0" >>"$CORVMO_COUNTS"
    exit 0
}

# Starts a display that nobody sees, for Windows programs with windows. It ends with the stage.
start_display() {
    local xvfb fifo=build/xvfb.fifo
    rm -f "$fifo"
    mkfifo "$fifo"
    Xvfb -displayfd 3 -screen 0 1920x1200x24 3>"$fifo" 2>build/xvfb.log &
    xvfb=$!
    # Wine's own processes that were begun for a display end with it.
    trap "wineserver -k; kill $xvfb" EXIT
    if ! read -r -t 60 DISPLAY <"$fifo"; then
        cat build/xvfb.log
        echo "Xvfb does not start"
        exit 1
    fi
    export DISPLAY=:$DISPLAY
    # Those that were begun without a display would stay without.
    wineserver -k
}

# run_under_wine PROGRAM SECONDS: counts the tests of a program that has so much time.
run_under_wine() {
    local program=$1 seconds=$2 log=build/wine-$1.log start=$SECONDS status=0 passed failed
    timeout -k 10 "$seconds" wine "build/windows-x86/$program" 2>&1 </dev/null | tr -d '\r' >"$log"
    status=${PIPESTATUS[0]}
    passed=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests*\.$/\1/p' "$log")
    failed=$(sed -n 's/^\[  FAILED  \] \([0-9]*\) tests*, listed below:$/\1/p' "$log")
    if [ -z "$passed" ]; then
        # No summary: the program was stopped in the test that it began last.
        tail -n 40 "$log"
        [ "$status" -eq 124 ] && echo "$program: stopped after $seconds s"
        echo "$program: ended with status $status in$(grep '^\[ RUN' "$log" | tail -n 1 | cut -c13-)"
        passed=$(grep -c '^\[       OK \]' "$log")
        failed=$(($(grep -c '^\[  FAILED  \]' "$log") + 1))
    elif [ "$passed" -eq 0 ] && [ -z "$failed" ]; then
        echo "$program: no test was run"
        failed=1
    elif [ "$status" -ne 0 ]; then
        grep -vE '^\[( RUN  |       OK |-+)' "$log" | tail -n 150
        # Every test passed, and the program failed at its end.
        failed=${failed:-1}
    fi
    echo "passed $passed" >>"$CORVMO_COUNTS"
    echo "failed ${failed:-0}" >>"$CORVMO_COUNTS"
    echo "$program: $passed passed, ${failed:-0} failed, $((SECONDS - start)) s"
    [ "${failed:-0}" -eq 0 ]
}
