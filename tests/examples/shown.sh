#!/usr/bin/env bash
# The code that the README and the page on moving over show is that of the examples, which are built and run.
set -euo pipefail
cd "$1"
[[ "$(<README.md)" == *"$(<examples/first_map.cpp)"* ]] || { echo "README.md shows another first_map.cpp" >&2; exit 1; }
ported=$(<examples/ported.cpp) block='' count=0
while IFS= read -r line; do
    case $line in
        '```cpp') block= ;;
        '```')
            [[ "$ported" == *"$block"* ]] || { echo "examples/ported.cpp lacks: $block" >&2; exit 1; }
            count=$((count + 1)) ;;
        *) block+=$line$'\n' ;;
    esac
done <docs/porting.md
[ "$count" -eq 4 ]
