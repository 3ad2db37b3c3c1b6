#!/usr/bin/env bash
# Kills imports at random moments, 200 unless another number is given, into new files and over a map that is there, and
# looks at what is left: a whole map, the old or the new one, or no file at all. One line says how often
# each came. Exit 1 when anything else was found. SEED=N repeats a run's choices.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
runs=${1:-200}
RANDOM=${SEED:-$$}
zulmap=$PWD/build/release/bin/zulmap
[[ -x $zulmap ]] || { echo "no $zulmap: build first, scripts/demo.sh does" >&2; exit 1; }
maps=("$PWD/data/countries-50m.geojson" "$PWD/data/countries-10m.topojson")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# What a file holds: its features and points once everything in it was looked through, or why it holds none.
state() {
    if [[ ! -e $1 ]]; then
        echo none
    elif "$zulmap" info "$1" >info 2>&1; then
        sed -nE '1s/.* ([0-9]+ features, [0-9]+ points).*/\1/p' info
    else
        cat info
    fi
}

whole=() milliseconds=()
for i in 0 1; do
    started=$(date +%s%N)
    "$zulmap" import "${maps[i]}" -o "map$i.zul" >/dev/null
    milliseconds[i]=$((($(date +%s%N) - started) / 1000000))
    whole[i]=$(state "map$i.zul")
    [[ ${whole[i]} == *points ]] || { echo "an import that nobody killed: ${whole[i]}" >&2; exit 1; }
done

# Sleeps some of so many milliseconds.
pause() {
    local time=$(((RANDOM * 32768 + RANDOM) % ($1 + 1)))
    sleep "$((time / 1000)).$(printf %03d $((time % 1000)))"
}

declare -A count=([old]=0 [new]=0 [none]=0 [wrong]=0)
killed=0 survived=0
while ((killed < runs)); do
    i=$((killed % 2))
    rm -f world.zul* ~*.part*
    before=
    if ((killed / 2 % 2)); then
        cp "map$((1 - i)).zul" world.zul
        before=${whole[1 - i]}
    fi
    "$zulmap" import "${maps[i]}" -o world.zul >/dev/null 2>&1 &
    importer=$!
    # Most of the time goes into reading: every other kill waits until the store is being written.
    if ((killed / 4 % 2)); then
        while ! compgen -G '*-wal' >/dev/null && kill -0 "$importer" 2>/dev/null; do sleep 0.002; done
        pause $((milliseconds[i] / 3))
    else
        pause "${milliseconds[i]}"
    fi
    kill -KILL "$importer" 2>/dev/null || true
    status=0
    { wait "$importer" || status=$?; } 2>/dev/null
    if ((status == 137)); then
        killed=$((killed + 1))
    else
        # It was done before: the machine is faster now than when it was measured.
        survived=$((survived + 1))
        milliseconds[i]=$((milliseconds[i] * 9 / 10 + 10))
        continue
    fi

    found=$(state world.zul)
    if [[ $found == "${whole[i]}" ]]; then
        outcome=new
    elif [[ -n $before && $found == "$before" ]]; then
        outcome=old
    elif [[ -z $before && $found == none ]]; then
        outcome=none
    else
        outcome=wrong
        echo "kill $killed left: $found" >&2
    fi
    count[$outcome]=$((count[$outcome] + 1))
done
echo "$killed imports killed ($survived ended before): ${count[old]} old maps, ${count[new]} new maps," \
    "${count[none]} no file, ${count[wrong]} anything else"
((count[wrong] == 0))
