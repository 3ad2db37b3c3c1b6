# Sourced by the scripts that run the tests of another target, where ctest knows whole programs, not their cases.

# run_whole_programs PRESET: runs the tests that are built; the last line it prints is N passed, M failed.
run_whole_programs() {
    local log=build/$1/tests.log status=0 passed failed
    ctest --preset "$1" --verbose >"$log" 2>&1 || status=$?
    # Of a program that runs more than once the last run counts. One that ends before its summary is a failure too,
    # though it names none.
    passed=$(awk '/^[0-9]+: \[  PASSED  \] [0-9]+ test/ { for (i = 1; i < NF; ++i) if ($i == "PASSED") of[$1] = $(i + 2) }
        END { for (program in of) n += of[program]; print n + 0 }' "$log")
    failed=$(sed -n 's/^[0-9]*: \[  FAILED  \] \([^ ]*\) (.*/\1/p' "$log" | sort -u | wc -l)
    [ "$status" -eq 0 ] || cat "$log"
    [ "$status" -eq 0 ] || [ "$failed" -gt 0 ] || failed=1
    echo "$passed passed, $failed failed"
    return "$status"
}
