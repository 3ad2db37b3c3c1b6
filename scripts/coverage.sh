#!/usr/bin/env bash
# How much of the library the tests reach: scripts/coverage.sh [--no-run | FILE...]. Builds everything with Clang's
# counters, runs every test, and prints the lines and branches reached in each room of zul/ and platform/; ends with the
# sums, and with status 1 when they are below 95 % of the lines or 85 % of the branches. A branch is one outcome of a
# condition as it is written; what the compiler adds for exceptions does not count. docs/coverage.md says what is left, and
# why. With --no-run the counts of the run before are shown again; with FILEs, the lines and branches in them that no test
# reached. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
folder=build/coverage
least_lines=95 least_branches=85

run_tests() {
    need_packages "${build_packages[@]}" "${coverage_packages[@]}"
    cmake --preset coverage >/dev/null
    cmake --build --preset coverage >&2
    rm -rf "$folder/counts"
    ctest --preset coverage >"$folder/tests.log" 2>&1 || { cat "$folder/tests.log" >&2; return 1; }
    llvm-profdata-14 merge -o "$folder/all.profdata" "$folder"/counts/*.profraw
}

# llvm_cov COMMAND ARGUMENT...: over the libraries as the tests used them.
llvm_cov() {
    local command=$1 objects=() library
    shift
    for library in "$folder"/lib/libzul*.so; do
        objects+=(-object "$library")
    done
    # The first library goes without the option.
    llvm-cov-14 "$command" -instr-profile "$folder/all.profdata" "${objects[@]:1}" "$@" 2>/dev/null
}

# rooms: reads llvm-cov's export, prints a line a room and the sums.
rooms() {
    python3 - "$PWD" "$least_lines" "$least_branches" <<'PYTHON'
import json, os, sys

root, least = sys.argv[1] + "/", {"lines": float(sys.argv[2]), "branches": float(sys.argv[3])}
rooms, whole = {}, {}
for entry in json.load(open("build/coverage/summary.json"))["data"][0]["files"]:
    name = os.path.normpath(entry["filename"]).removeprefix(root)
    if not name.startswith(("zul/", "platform/")):
        continue
    for sums in (rooms.setdefault(name.rsplit("/", 1)[0], {}), whole):
        for kind in least:
            reached, total = sums.get(kind, (0, 0))
            counted = entry["summary"][kind]
            sums[kind] = (reached + counted["covered"], total + counted["count"])

def row(name, sums):
    parts = ["%s %5.1f %% (%d of %d)" % (kind, 100.0 * of[0] / max(of[1], 1), *of) for kind, of in sums.items()]
    print("%-20s %s" % (name, "   ".join(parts)))

for name in sorted(rooms):
    row(name, rooms[name])
row("together", whole)
sys.exit(any(100.0 * whole[kind][0] < least[kind] * whole[kind][1] for kind in least))
PYTHON
}

case "${1:-}" in
    "") run_tests ;;
    --no-run) ;;
    *)
        for file in "$@"; do
            llvm_cov show -show-branches=count |
                awk -v wanted="/$file:" '/^\/.*:$/ { here = substr($0, length($0) - length(wanted) + 1) == wanted } here' |
                grep -E '^/|^ *[0-9]+\| +0\||Branch \(.*(True|False): 0[],]'
        done
        exit
        ;;
esac
llvm_cov export -summary-only >"$folder/summary.json"
rooms
