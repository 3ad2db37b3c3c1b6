#!/usr/bin/env bash
# Runs PROGRAM in a folder of its own, where it must leave PICTURE with the SHA-256 digest.
set -euo pipefail
program=$1 picture=$2 digest=$3
rm -rf "$program.run"
mkdir "$program.run"
cd "$program.run"
"$program"
echo "$digest  $picture" | sha256sum --check
