#!/usr/bin/env bash
# Holds the includes of src/ to what the rooms' CMakeLists.txt say. A room is a
# folder with a tova_room; its folder internal/ belongs to it and is closed to
# all others. Fails when a file includes from a room that its own doesn't name
# under USES, when USES names a room for nothing, when rooms or files include
# each other in a circle (a source and its header count as one file), when a
# foreign library is included outside the room that it stands behind, and when
# two headers have a type of one name: the linker would take either for both.
#
# Includes are read as text, so they have one form: #include at the start of a
# line, and "FOLDER/FILE.h" from src/ or <...> for what is not of this tree.
set -euo pipefail
cd "$(dirname "$0")/../src"

status=0
fail() {
  echo "$*" >&2
  status=1
}
files() { git ls-files -z --cached --others --exclude-standard -- "$@"; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# USER USED for each room, out of the words behind USES.
files '*CMakeLists.txt' | while IFS= read -rd '' list; do
  awk -v room="${list%/CMakeLists.txt}" '
    /^tova_room\(/ { inside = 1 }
    inside {
      ends = sub(/\).*/, "")
      for (i = 1; i <= NF; ++i) {
        if (uses) print room, $i
        if ($i == "USES") uses = 1
      }
      if (ends) exit
    }' "$list"
done | sort -u >"$work/declared"

# What would get past the text.
while IFS= read -r line; do
  fail "$line: not the one form of an include"
done < <(files '*.h' '*.cpp' |
  xargs -0 grep -HnE '(#|%:|\?\?=).*(include|import)|(#|%:|\?\?=).*\\$' |
  grep -vE ':#include ("([a-z0-9_]+/)+[a-z0-9_]+\.h"|<[A-Za-z0-9_][A-Za-z0-9_/.+-]*>)( +//.*)?$')
while IFS= read -rd '' file; do
  fail "$file: sources end in .cpp and headers in .h"
done < <(files '*.c' '*.cc' '*.cxx' '*.c++' '*.hh' '*.hpp' '*.hxx' '*.inc' \
  '*.ipp' '*.tpp' '*.def')

# A room's target is named in its own list alone, and there by no other name.
target_of() { sed 's|/CMakeLists.txt$||; s|/|_|g; s|^|tova_|' <<<"$1"; }
files '*CMakeLists.txt' | xargs -0 grep -l '^tova_room(' |
  while read -r list; do target_of "$list"; done >"$work/targets"
while IFS= read -r line; do
  fail "src/$line: a room is joined to others by USES alone"
done < <(
  files '*CMakeLists.txt' | xargs -0 grep -HnE '\.\./|-include' || true
  files '*CMakeLists.txt' | while IFS= read -rd '' list; do
    grep -HnowFf "$work/targets" "$list" |
      grep -v ":$(target_of "$list")\$" || true
  done
)

# With a folder of its own for includes a room could name a header of the tree
# in another way.
files '*.h' | tr '\0' '\n' >"$work/headers"
while IFS= read -r name; do
  ! grep -qE "(^|/)${name//./\\.}\$" "$work/headers" ||
    fail "<$name>: a header of the tree is named from src/, in quotes"
done < <(files '*.h' '*.cpp' | xargs -0 grep -hoP '^#include <\K[^>]+' | sort -u)

# FILE INCLUDED for each include of the tree's own files, also in <...>.
folders=$(printf '%s|' */)
files '*.h' '*.cpp' | xargs -0 grep -HE '^#include ' |
  sed -E 's/:#include (["<][^">]*[">]).*/ \1/' |
  grep -E " (\"|<(${folders%|}))" | tr -d '"<>' >"$work/includes"

room_of() {
  local room=${1%/*}
  echo "${room%/internal}"
}

while read -r file include; do
  room=$(room_of "$file")
  used=$(room_of "$include")
  echo "${file%.*} ${include%.*}" >>"$work/files"
  [[ $room == "$used" ]] && continue
  echo "$room $used" >>"$work/used"
  [[ $include != */internal/* ]] ||
    fail "$file: $include is for the files of src/$used alone"
done <"$work/includes"

sort -u "$work/used" -o "$work/used"
while read -r room used; do
  fail "src/$room includes from src/$used, which its USES lacks"
done < <(comm -13 "$work/declared" "$work/used")
while read -r room used; do
  fail "src/$room names src/$used under USES but includes nothing from it"
done < <(comm -23 "$work/declared" "$work/used")

# tsort names the members of a circle.
for kind in declared files; do
  tsort "$work/$kind" >/dev/null 2>"$work/circle" || {
    sed "s/^tsort: [^ ]*: /A circle of includes: /; s/^tsort: /  /" \
      "$work/circle" >&2
    status=1
  }
done

# Each foreign library stands behind one room.
foreign() {  # foreign ROOM PATTERN: PATTERN is included in ROOM alone
  local file
  while IFS= read -r file; do
    [[ $(room_of "$file") == "$1" ]] ||
      fail "$file: $2 may be included in src/$1 alone"
  done < <(files '*.h' '*.cpp' | xargs -0 grep -lE "^#include [<\"]$2")
}
foreign companion/ground 'nlohmann/'
foreign companion/command_line 'CLI/'
foreign outside_keys 'openssl/'
foreign elf_tables '(elfutils/)?(g|lib)?elf\.h'

# shellcheck disable=SC2016
while read -r type headers; do
  fail "$type stands in more than one header: $headers"
done < <(files '*.h' | xargs -0 awk '
  $1 ~ /^(class|struct|union|enum)$/ && /^[^ ].*[{,:]$/ {
    name = $2 ~ /^(class|struct)$/ ? $3 : $2
    if (name in seen) seen[name] = seen[name] " " FILENAME
    else seen[name] = FILENAME
  }
  END { for (name in seen) if (seen[name] ~ / /) print name, seen[name] }')

[[ $status == 0 ]] &&
  echo "$(wc -l <"$work/files") includes keep to the rooms"
exit $status
