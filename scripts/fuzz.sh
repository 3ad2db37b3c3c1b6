#!/usr/bin/env bash
# Looks for inputs that the library does not stand, under the address and undefined behaviour sanitizers.
#   scripts/fuzz.sh [MINUTES]            every target, so many minutes each (10 if not given)
#   scripts/fuzz.sh TARGET [ARGUMENT...] one target; arguments go to its program
# Targets: text (fonts, texts, clips and views, through the device and the canvas), parameters (tools' settings as blocks
# of lines and as XML), stored_objects (graphs of stored forms, drawn with), store_files (damaged store files), all with
# arguments as clang's fuzzer takes them, such as -max_total_time=SECONDS or a file to try again, and bmp_files (damaged
# files handed to everything that reads them: --count N, --seed S, --first NUMBER to try one again, --cap MIB). What was found to be worth keeping stays in
# build/fuzz/corpus between runs, and an input that fails is left there. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

# Files in memory: the disk would take most of the time.
in_memory() { [ ! -d /dev/shm ] || export TMPDIR=/dev/shm; }

# clang_fuzzer TARGET ARGUMENT...
clang_fuzzer() {
    local target=$1 argument inputs
    shift
    need_packages "${build_packages[@]}" "${fuzz_packages[@]}"
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz --target "fuzz_$target" >&2
    inputs=("build/fuzz/corpus/$target")
    mkdir -p "${inputs[0]}"
    [ ! -d "fuzz/seeds/$target" ] || inputs+=("fuzz/seeds/$target")
    for argument in "$@"; do
        [ ! -f "$argument" ] || inputs=()
    done
    "build/fuzz/bin/fuzz_$target" -timeout=30 -rss_limit_mb=2048 -artifact_prefix=build/fuzz/corpus/ \
        "${inputs[@]}" "$@"
}

fuzz_text() { clang_fuzzer text -max_len=1000 "$@"; }

fuzz_parameters() {
    in_memory
    clang_fuzzer parameters -max_len=2000 "$@"
}

fuzz_stored_objects() { clang_fuzzer stored_objects -max_len=2000 -len_control=0 "$@"; }

fuzz_store_files() {
    in_memory
    clang_fuzzer store_files -max_len=200 "$@"
}

fuzz_bmp_files() {
    need_packages "${build_packages[@]}"
    cmake --preset asan >/dev/null
    cmake --build --preset asan --target mutated_bmp_files >&2
    in_memory
    ASAN_OPTIONS=max_allocation_size_mb=1100:${ASAN_OPTIONS:-} build/asan/bin/mutated_bmp_files "$@"
}

case "${1:-10}" in
    *[!0-9]*)
        target="$1"
        shift
        declare -F "fuzz_$target" >/dev/null || { echo "there is no target $target" >&2; exit 2; }
        "fuzz_$target" "$@"
        ;;
    *)
        minutes="${1:-10}"
        fuzz_text -max_total_time=$((minutes * 60)) -print_final_stats=1
        fuzz_parameters -max_total_time=$((minutes * 60)) -print_final_stats=1
        fuzz_stored_objects -max_total_time=$((minutes * 60)) -print_final_stats=1
        fuzz_store_files -max_total_time=$((minutes * 60)) -print_final_stats=1
        fuzz_bmp_files --count $((minutes * 20000))
        ;;
esac
