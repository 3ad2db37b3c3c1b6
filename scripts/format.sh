#!/usr/bin/env bash
# Formats every C++ source in place; with --check it only tells which ones it would change.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages clang-format
mode=(-i)
[ "${1:-}" != --check ] || mode=(--dry-run --Werror)
git ls-files -co --exclude-standard -z '*.h' '*.cpp' | xargs -0 -r clang-format "${mode[@]}"
