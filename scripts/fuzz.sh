#!/usr/bin/env bash
# Looks for inputs that the library does not stand, under the address and undefined behaviour sanitizers.
#   scripts/fuzz.sh [MINUTES [TARGET...]]
#       every target or these, so many minutes each (10 if not given), as many side by side as there are cores. Ends with a
#       line for each, and fails when anything was found
#   scripts/fuzz.sh TARGET [ARGUMENT...]
#       one target; arguments are clang's fuzzer's, such as -max_total_time=SECONDS, or a file to try again
# What was worth keeping stays in build/fuzz/corpus between runs, an input that fails is left in build/fuzz/findings and
# what its target said about it in build/fuzz/logs. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

# The name is that of a source in fuzz/, which says what it tries, and of a folder with seeds; options are the fuzzer's.
# Where an input reaches very much, counting how rare each place is would take most of the time: no -entropic.
export targets='
bmp_files        -max_len=1000 -len_control=0
canvas_calls     -max_len=1000 -len_control=0 -entropic=0
device_calls     -max_len=1000 -len_control=0 -entropic=0
formats          -max_len=500 -dict=fuzz/seeds/formats.dict
packed_dibs      -max_len=1000 -len_control=0
parameters       -max_len=2000 -dict=fuzz/seeds/parameters.dict
pens             -max_len=400 -len_control=0 -entropic=0
point_lists      -max_len=1000 -len_control=0
scaler_sequences -max_len=1000 -len_control=0
store_files      -max_len=200
stored_objects   -max_len=2000 -len_control=0
text             -max_len=500 -len_control=10
xml              -max_len=2000 -len_control=20 -dict=fuzz/seeds/xml.dict
'

# fuzz TARGET ARGUMENT...
fuzz() {
    local target=$1 options inputs argument
    shift
    read -ra options <<<"$(sed -n "s/^$target\( .*\)\?$/\1/p" <<<"$targets")"
    inputs=("build/fuzz/corpus/$target")
    mkdir -p "${inputs[0]}" build/fuzz/findings
    [ ! -d "fuzz/seeds/$target" ] || inputs+=("fuzz/seeds/$target")
    for argument in "$@"; do
        [ "${argument#-}" != "$argument" ] || inputs=()
    done
    # Scratch files in memory: the disk would take most of the time.
    [ ! -d /dev/shm ] || export TMPDIR=/dev/shm
    ASAN_SYMBOLIZER_PATH=/usr/lib/llvm-14/bin/llvm-symbolizer UBSAN_OPTIONS=print_stacktrace=1 \
        "build/fuzz/bin/fuzz_$target" -timeout=120 -rss_limit_mb=2048 "-artifact_prefix=build/fuzz/findings/$target-" \
        "${options[@]}" "${inputs[@]}" "$@"
}

# record TARGET SECONDS: keeps in a log what the target says, and how it ended.
record() {
    local status=0
    fuzz "$1" "-max_total_time=$2" -print_final_stats=1 >"build/fuzz/logs/$1" 2>&1 || status=$?
    echo "ended with $status" >>"build/fuzz/logs/$1"
}

# summary TARGET: a line from its log.
summary() {
    awk -v target="$1" '
        /^#.* cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") edges = $(i + 1) }
        /^stat::number_of_executed_units/ { inputs = $2 }
        /^stat::average_exec_per_sec/ { speed = $2 }
        /Test unit written to/ { found = $NF }
        /^ended with/ { status = $3 }
        END {
            printf "%-18s %10d inputs %7d/s %6d edges  %s\n", target, inputs, speed, edges,
                status == 0 ? "nothing found" : "FOUND " (found ? found : "see build/fuzz/logs/" target)
            exit status != 0
        }' "build/fuzz/logs/$1"
}

all=$(awk 'NF { print $1 }' <<<"$targets")
minutes=10
case "${1:-}" in
    '') names=$all ;;
    *[!0-9]*) minutes= names=$1 ;;
    *) minutes=$1 names=${*:2} names=${names:-$all} ;;
esac
for target in $names; do
    grep -qx -- "$target" <<<"$all" || { echo "there is no target $target; there are:" $all >&2; exit 2; }
done

need_packages "${build_packages[@]}" "${fuzz_packages[@]}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target $(printf 'fuzz_%s ' $names) >&2

if [ -z "$minutes" ]; then
    fuzz "$@"
    exit
fi
mkdir -p build/fuzz/logs
export -f fuzz record
printf '%s\n' $names | xargs -P "$(nproc)" -I{} bash -c "record {} $((minutes * 60))"
status=0
for target in $names; do
    summary "$target" || status=1
done
exit "$status"
