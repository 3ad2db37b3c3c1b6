#!/usr/bin/env bash
# run.sh PROGRAM ["DIGEST  PICTURE"]...: runs the program twice in a folder of its own, where it must leave pictures with
# these SHA-256 digests each time.
set -euo pipefail
program=$1
shift
rm -rf "$program.run"
mkdir "$program.run"
cd "$program.run"
for _ in first again; do
    "$program"
    [ $# -eq 0 ] || printf '%s\n' "$@" | sha256sum --check
done
