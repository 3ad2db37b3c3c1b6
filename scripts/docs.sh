#!/usr/bin/env bash
# Builds the pages about every public header into build/docs/html. What is not documented, or wrongly, is an error. On a
# bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}" "${docs_packages[@]}"
rm -rf build/docs
cmake --preset release >/dev/null
cmake --build --preset release --target docs
echo "build/docs/html/index.html: $(find build/docs/html -name '*.html' | wc -l) pages"
