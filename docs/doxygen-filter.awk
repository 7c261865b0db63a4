# Shows the headers' plain comments to Doxygen: awk -f doxygen-filter.awk HEADER
#
#   - a block above a declaration documents it, and those that follow without a blank line
#   - a comment behind a declaration documents it, with the lines aligned below it
#   - "// ---- title: text ----" begins a group, whose text stands for members without any of their own
#   - in a block, two more spaces, names and two spaces begin a parameter; four spaces an example

# The names of a table's row: "nOutW/H" stands for nOutW and nOutH, spaces go.
function namesOf(cell,    stem) {
    if (match(cell, /\/[A-Z]$/)) {
        stem = substr(cell, 1, RSTART - 2)
        cell = stem substr(cell, RSTART - 1, 1) "," stem substr(cell, RSTART + 1)
    }
    gsub(/ /, "", cell)
    return cell
}

# The lines of the block from `first` on, as one documentation text.
function textOf(first, isFunction,    i, t, out, names, text, inTable, inExample, atStart) {
    out = ""
    atStart = 1
    for (i = first; i <= lines; ++i) {
        t = block[i]
        if (inExample && t !~ /^    /) {
            out = out "\\endverbatim\n"
            inExample = 0
        }
        if (match(t, /^  [A-Za-z_][A-Za-z0-9_]*((, |\/)[A-Za-z0-9_]+)*  +/)) {
            text = substr(t, RLENGTH + 1)
            names = namesOf(substr(t, 3, index(substr(t, 3), "  ") - 1))
            out = out (isFunction ? "\\param " names " " : "- `" names "`: ") text "\n"
            inTable = 1
        } else if (t ~ /^    / && inTable) {
            sub(/^ +/, "", t)
            out = out "  " t "\n"
        } else if (t ~ /^    /) {
            if (!inExample) out = out "\\verbatim\n"
            inExample = 1
            out = out t "\n"
        } else {
            if (atStart && isFunction) sub(/^Returns /, "\\return ", t)
            if (t != "") inTable = 0
            out = out t "\n"
        }
        atStart = t == ""
    }
    if (inExample) out = out "\\endverbatim\n"
    return out
}

# A documentation comment on one line of the output, whatever its text has.
function comment(text) {
    sub(/\n$/, "", text)
    return "/*! " text " */"
}

# Prints the block's lines as documentation for what follows.
function document(declaration,    isFunction) {
    isFunction = declaration ~ /\(/ && declaration !~ /^ *#/
    if (!seenFile) {
        seenFile = 1
        print comment("\\file\n" textOf(1, 0))
    } else if (block[1] ~ /^---- .* ----$/) {
        beginGroup()
    } else {
        doc = comment(textOf(1, isFunction))
        print doc
    }
    lines = 0
}

# With a capital, unless it begins with a name of the code.
function sentence(text) {
    return text ~ /^[a-z]+[A-Z]/ ? text : toupper(substr(text, 1, 1)) substr(text, 2)
}

function beginGroup(    title, colon, text) {
    title = substr(block[1], 6, length(block[1]) - 10)
    text = textOf(2, 0)
    groupDoc = ""
    if ((colon = index(title, ": ")) > 0) {
        groupDoc = sentence(substr(title, colon + 2)) "."
        text = groupDoc "\n" text
        groupDoc = comment(groupDoc)
        title = substr(title, 1, colon - 1)
    }
    if (inGroup) print "/*! @} */"
    inGroup = 1
    print comment("@name " sentence(title) "\n" text "@{")
    doc = ""
}

{
    trimmed = $0
    sub(/^ +/, "", trimmed)
}

# A comment that goes on with the one behind the line above.
lines == 0 && behind && trimmed ~ /^\/\// && index($0, "//") == behind {
    sub(/\/\//, "///<")
    print
    next
}

trimmed ~ /^\/\// {
    sub(/^\/\/ ?/, "", trimmed)
    block[++lines] = trimmed
    behind = 0
    next
}

{ behind = 0 }

trimmed == "" {
    if (lines > 0) {
        if (block[1] ~ /^---- / || !seenFile) document("")
        lines = 0
    }
    doc = ""
    print
    next
}

{
    if (lines > 0) {
        document($0)
        fresh = 1
    }
    if (trimmed ~ /^(};|#ifdef|#ifndef|#endif)/ && inGroup) {
        print "/*! @} */"
        inGroup = 0
        groupDoc = ""
    }
    hasOwn = 0
    if (trimmed !~ /^(}|#if|#else|#endif|#include)/ && (at = index($0, " // ")) > 0) {
        behind = at + 1
        hasOwn = 1
        sub(/ \/\/ /, " ///< ")
    }
    code = trimmed
    sub(/ *\/\/.*$/, "", code)
    starts = ended && code !~ /^(}|#if|#else|#endif|#include|#ifndef|public:)/
    if (starts && !fresh && !hasOwn) {
        if (doc != "")
            print doc
        else if (groupDoc != "")
            print groupDoc
    }
    fresh = 0
    ended = code ~ /[;{}:,]$/ && depth(code) == 0 || code ~ /^#/
    if (code ~ /[{]$/) doc = ""
    if (code ~ /^[a-z ]+ m_[A-Za-z0-9]+ = [^,(]+(, m_[A-Za-z0-9]+ = [^,(]+)+;$/)
        printEach(code)
    else
        print
}

# Several fields declared at once, each with the text of the first.
function printEach(code,    fields, count, type, i) {
    sub(/;$/, "", code)
    count = split(code, fields, ", ")
    type = code
    sub(/ m_.*/, "", type)
    print fields[1] ";"
    for (i = 2; i <= count; ++i)
        print (doc != "" ? doc : groupDoc) " " type " " fields[i] ";"
}

# Open parentheses that the line leaves; a parameter list goes on then.
function depth(code,    opened, closed) {
    opened = gsub(/\(/, "(", code)
    closed = gsub(/\)/, ")", code)
    open += opened - closed
    return open
}
