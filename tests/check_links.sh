#!/bin/sh
# Checks that the relative links of the Markdown pages lead to files: check_links.sh TREE
set -eu
cd "$1"
status=0
for page in *.md */*.md docs/*/*.md; do
    # Code is no link, though some of it looks like one.
    for link in $(sed -e '/^```/,/^```/d' -e 's/`[^`]*`//g' "$page" |
        grep -o ']([^)]*)' | sed -e 's/^](//' -e 's/)$//' -e 's/#.*//'); do
        case $link in
        *://* | mailto:*) continue ;;
        esac
        if [ ! -e "$(dirname "$page")/$link" ]; then
            echo "$page links to $link, which is no file" >&2
            status=1
        fi
    done
done
exit $status
