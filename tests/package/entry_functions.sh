#!/usr/bin/env bash
# The host finds the library's entry functions by their plain names.
set -euo pipefail
symbols=$(nm -D --defined-only "$1" | awk '{ print $3 }')
for name in AutoRegister InitializeLibrary FinalizeLibrary; do
    grep -qx "$name" <<<"$symbols" || { echo "$name is not exported from $1" >&2; exit 1; }
done
