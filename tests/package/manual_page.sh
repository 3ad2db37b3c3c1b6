#!/usr/bin/env bash
# The manual page and the program's own help tell of the same commands and options.
set -euo pipefail
program=$1 page=$2
commands=$("$program" --help | awk '/^Subcommands:/ { on = 1; next } on && NF { print $1 }')
helps=$("$program" --help; for command in $commands; do "$program" "$command" --help; done)
diff <(grep -oE -- '--[a-z]+(-[a-z]+)*' <<<"$helps" | sort -u) \
    <(sed 's/\\-/-/g' "$page" | grep -oE -- '--[a-z]+(-[a-z]+)*' | sort -u)
diff <(sort <<<"$commands") <(sed -n 's/^\.B zulmap \([a-z]*\).*/\1/p' "$page" | sort -u)
