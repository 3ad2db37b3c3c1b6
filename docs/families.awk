# What Doxygen reads of a header. Here a comment speaks for every declaration below it, up to the next comment or empty
# line: this marks such families as groups of members with one documentation. Line numbers stay.
function indent_of(line) {
    match(line, /^ */)
    return RLENGTH
}

# A comment of several lines must be one block, or Doxygen takes its first line for a sentence.
function flush_run(    i, heads) {
    if (members > 1) {
        for (heads = 1; run[heads + 1] ~ /^ *\/\/\//; ++heads) {}
        for (i = 1; i <= heads; ++i) sub(/\/\/\//, i == 1 ? "/**@{*/ /**" : "", run[i])
        run[heads] = run[heads] " */"
    }
    run[1] = before run[1]
    for (i = 1; i <= lines; ++i) print run[i]
    closing = members > 1 ? "/**@}*/" : ""
    lines = members = 0
}

# Whether a run ends before this line: at an empty line, a further comment, or the end of what encloses it. Neither is a
# class a member of a family, nor what a base class tells of.
function ends_run(line, is_comment) {
    if (line ~ /^ *$/ || line ~ /^ *(public|protected|private):/ || indent_of(line) < indent) return 1
    if (is_comment) return members > 0
    if (members > 0 && line ~ /( override|= delete;)|^ *(virtual )?~/) return 1
    return members == 0 && line ~ /^ *(class|struct|enum|union|namespace|template|#)/
}

# One declaration of several variables counts as several.
function members_in(line) {
    if (indent_of(line) != indent || line ~ /^ *}/) return 0
    return line ~ /^ *(constexpr )?[A-Za-z_0-9:]+ [A-Za-z_0-9]+( = [0-9A-Fx]+)?, / ? 2 : 1
}

lines > 0 {
    is_comment = $0 ~ /^ *\/\//
    if (!ends_run($0, is_comment)) {
        if (!is_comment) members += members_in($0)
        run[++lines] = $0
        next
    }
    flush_run()
}

/^ *\/\/\/[^<]/ {
    indent = indent_of($0)
    before = closing
    closing = ""
    run[++lines] = $0
    next
}

{
    print closing $0
    closing = ""
}

END { if (lines > 0) flush_run() }
