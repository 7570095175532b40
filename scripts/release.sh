#!/usr/bin/env bash
# release.sh TAG [OUT]
# Makes all that a release consists of out of a tag: Debian packages, archives
# for Linux and Windows, a bill of materials (SPDX) and SHA256SUMS, in OUT,
# build/release-TAG if left out. Everything is made twice, in other folders, time
# zones and umasks, and must be the same byte for byte.
set -euo pipefail
cd "$(dirname "$0")/.."

tag=${1:?usage: release.sh TAG [OUT]}
out=${2:-build/release-$tag}
commit=$(git rev-parse --verify --quiet "refs/tags/$tag^{commit}") || {
  echo "There is no tag $tag" >&2
  exit 1
}
scripts/set-up.sh build companion windows release
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
TOVA_MAINTAINER=$(git log -1 --format='%an <%ae>' "$commit")
export SOURCE_DATE_EPOCH TOVA_MAINTAINER

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
make_in() {  # make_in FOLDER: out of the tag's tree there
  mkdir -p "$1/tree"
  git archive "$commit" | tar -x -C "$1/tree"
  "$1/tree/scripts/make-packages.sh" "$1/out" --windows
}
make_in "$work/one"
(umask 077 && TZ=Asia/Tokyo make_in "$work/an/other")
diff -r "$work/one/out" "$work/an/other/out"

rm -rf "$out"
mkdir -p "$out"
cp "$work/one/out"/* "$out/"
scripts/list-materials.py "$tag" "$commit" "$SOURCE_DATE_EPOCH" "$out"/* \
  >"$work/spdx.json"
cp "$work/spdx.json" "$out/tova-fw.spdx.json"
(cd "$out" && sha256sum -- * >"$work/sums" && cp "$work/sums" SHA256SUMS)
chmod 644 "$out"/*
echo "Made twice, and equal: $out"
cat "$out/SHA256SUMS"
