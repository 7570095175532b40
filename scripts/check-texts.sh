#!/usr/bin/env bash
# Compares docs/troubleshooting.md with the code, both ways: each text of an
# error or a warning stands in the file, and each text in the first column of
# the file's tables stands in the code.
#
# A text of the code is a string literal in a function that throws or warns,
# outside its information and detail lines, and each name of a failed
# operation. The table of the crypto library's statuses is never printed.
set -euo pipefail
cd "$(dirname "$0")/.."

papers=docs/troubleshooting.md
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The companion's rooms: its manual page tells of its texts.
companion=(':!src/companion' ':!src/inspect' ':!src/lint' ':!src/memory_map'
  ':!src/outside_keys' ':!src/elf_tables' ':!src/address_lookup')

# Literals, one a line, adjacent ones joined, line ends and surrounding blanks
# cut off. literals errors: those of functions that throw or warn. literals
# all: all of them.
literals() {
  git ls-files -z --cached --others --exclude-standard \
    'src/*.cpp' 'src/*.h' ':!src/crypto/zels_status.*' "${companion[@]}" |
    xargs -0 awk -v "mode=$1" -f scripts/literals.awk |
    sed 's/\\[nr]/\n/g; s/\\"/"/g' | sed 's/^ *//; s/ *$//' |
    grep '[A-Za-z]\{2\}' | sort -u
}

literals errors >"$work/errors"
literals all >"$work/all"
# In one line, since texts may be broken over two lines there.
tr '\n' ' ' <"$papers" | tr -s ' ' >"$work/papers"

# A text may be put together of two literals.
is_in_code() {
  local head=$1 tail=
  until grep -qF -- "$head" "$work/all"; do
    [[ $head == *' '* ]] || return 1
    tail="${head##* }${tail:+ $tail}"
    head=${head% *}
  done
  [[ -z $tail ]] || grep -qF -- "$tail" "$work/all"
}

status=0
while IFS= read -r text; do
  grep -qF -- "$text" "$work/papers" || {
    echo "$papers lacks: $text" >&2
    status=1
  }
done <"$work/errors"

# The code spans of the first column, cut at their placeholders.
tick='`'
while IFS= read -r text; do
  # The standard library's words around the name of the failed operation.
  [[ $text == 'filesystem error: canonical'* ]] || is_in_code "$text" || {
    echo "$papers tells of a text that the code lacks: $text" >&2
    status=1
  }
done < <(
  grep '^| ' "$papers" | cut -d '|' -f 2 | grep -o "${tick}[^${tick}]*${tick}" |
    tr -d "$tick" | sed 's/^<[a-z]*>: \[[^]]*\] *//; s/<[a-z]*>/\n/g' |
    sed 's/^ *//; s/ *$//' | grep '[A-Za-z]\{2\}')

[[ $status == 0 ]] && echo "$(wc -l <"$work/errors") texts stand in $papers"
exit $status
