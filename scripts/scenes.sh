# Sourced by the scripts that draw the same scenes on two devices. They say which two by the functions `ours` and `theirs`,
# which run the program of scenes with --seed $seed, and in near_kinds which kinds of scenes may be near to be right.

near_kinds=
out=build/scenes
seed=1 count=2000 first=0 kind=()

# read_scene_options [--seed S] [--count N] [--kind K] [--first I]
read_scene_options() {
    while [ $# -gt 0 ]; do
        [ $# -gt 1 ] || { echo "$1 needs a value" >&2; exit 2; }
        case $1 in
            --seed) seed=$2 ;;
            --count) count=$2 ;;
            --first) first=$2 ;;
            --kind) kind=(--kind "$2") ;;
            *) echo "unknown option $1" >&2; exit 2 ;;
        esac
        shift 2
    done
}

# build_scenes PRESET: the program here and for the other target, and that which judges.
build_scenes() {
    cmake --preset release >/dev/null
    cmake --preset "$1" >/dev/null
    cmake --build --preset release --target scenes --target scene_difference >&2
    cmake --build --preset "$1" --target scenes >&2
}

# draw SIDE FIRST COUNT FILE: the lines of these scenes. Goes on behind a scene that a side does not finish, some times.
# A side that ends may only have been short of something: a scene counts as unfinished when it was tried twice.
draw() {
    local side=$1 next=$2 end=$(($2 + $3)) failed=-1 try
    : >"$4"
    for try in {1..20}; do
        "$side" --first "$next" --count $((end - next)) "${kind[@]}" >>"$4" && return
        next=$(($2 + $(wc -l <"$4")))
        if [ "$next" -eq "$failed" ]; then
            echo "$next ? unfinished" >>"$4"
            next=$((next + 1)) failed=-1
        else
            failed=$next
        fi
        [ "$next" -lt "$end" ] || return 0
    done
    echo "$side: given up before scene $next" >&2
}

judge() { # SCENE [OUT]
    build/release/bin/scene_difference "$out/ours/$1-before.ppm" "$out/theirs/$1.ppm" "$out/ours/$1.ppm" "${@:2}"
}

# compare_scenes: prints a table of kinds, where to look at those that differ, and last "N scenes, M differ", when it fails
# unless M is 0.
compare_scenes() {
    local parts part from to number name state verdict text differ
    rm -rf "$out"
    mkdir -p "$out/ours" "$out/theirs"
    # Their side may take its time: every processor draws a part of its scenes.
    parts=$(nproc)
    for part in $(seq 0 $((parts - 1))); do
        from=$((count * part / parts)) to=$((count * (part + 1) / parts))
        [ "$from" -eq "$to" ] || draw theirs $((first + from)) $((to - from)) "$out/theirs.$part" &
    done
    draw ours "$first" "$count" "$out/ours.txt"
    wait
    cat "$out"/theirs.[0-9]* >"$out/theirs.txt"

    # Scenes that are not equal: number, kind, and whether the system finished them.
    awk 'FILENAME == ARGV[1] { hash[$1] = $3; next }
        hash[$1] != $3 { print $1, $2, hash[$1] == "" || hash[$1] == "unfinished" ? "unfinished" : "drawn" }' \
        "$out/theirs.txt" "$out/ours.txt" >"$out/unequal.txt"

    # Both sides' pictures of those that are judged or shown: all of the two kinds, the first of every other.
    awk -v near="$near_kinds" '$3 == "drawn" && (index(" " near " ", " " $2 " ") || !seen[$2]++)' "$out/unequal.txt" \
        >"$out/pictures.txt"
    if [ -s "$out/pictures.txt" ]; then
        cut -d ' ' -f 1,2 "$out/pictures.txt" >"$out/list.txt"
        ours --list "$out/list.txt" --dump "$out/ours" >/dev/null
        theirs --list "$out/list.txt" --dump "$out/theirs" >/dev/null
    fi

    # The same list with a verdict in the third column.
    while read -r number name state; do
        verdict=differ
        case " $near_kinds " in
            *" $name "*) [ "$state" = unfinished ] || verdict=$(judge "$name-$number" | cut -d : -f 1) ;;
        esac
        echo "$number $name $verdict $state"
    done <"$out/unequal.txt" >"$out/judged.txt"

    printf '%-16s %8s %8s %8s %8s\n' kind scenes equal near differ
    awk 'FILENAME == ARGV[1] { ++unequal[$2, $3]; next } { if (!all[$2]++) order[++n] = $2 }
        END { for (i = 1; i <= n; ++i) {
            k = order[i]; near = unequal[k, "near"]; differ = unequal[k, "differ"]
            printf "%-16s %8d %8d %8d %8d\n", k, all[k], all[k] - near - differ, near, differ } }' \
        "$out/judged.txt" "$out/ours.txt"

    # Those that differ come first.
    sort -s -k 3,3 "$out/judged.txt" | awk '!seen[$2]++' | while read -r number name verdict state; do
        if [ "$state" = unfinished ]; then
            echo "$out/$name-$number: not finished"
        else
            text=$(judge "$name-$number" "$out/$name-$number")
            echo "$out/$name-$number: $verdict: ${text#*: }"
        fi
    done

    differ=$(grep -c ' differ ' "$out/judged.txt" || true)
    echo "$(wc -l <"$out/ours.txt") scenes, $differ differ"
    [ "$differ" -eq 0 ]
}
