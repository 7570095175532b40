#!/usr/bin/env bash
# make-packages.sh OUT [--windows]
# Puts into OUT what a release has for this machine: two Debian packages and an
# archive that works from wherever it is unpacked; with --windows, one for that
# system, too. The same tree gives the same bytes in every folder, time zone and
# umask, as long as SOURCE_DATE_EPOCH is the same; without one it is the commit's.
set -euo pipefail
mkdir -p "${1:?usage: make-packages.sh OUT [--windows]}"
out=$(realpath "$1")
cd "$(dirname "$0")/.."
source scripts/quietly.sh
umask 022  # which shows in the frame of a Debian package

if [[ -z ${SOURCE_DATE_EPOCH:-} ]]; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
fi
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# stage PRESET NAME: installs into a new folder of that name, with rights and
# dates of its own, and shows the folder that it lies in.
stage() {
  local root
  root=$PWD/build/$1-stage
  rm -rf "$root"
  cmake --install "build/$1" --prefix "$root/$2" --strip >/dev/null
  chmod -R u=rwX,go=rX "$root"
  find "$root" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
  echo "$root"
}

# The stamp of an earlier build may tell another time.
rm -f build/{tool,windows}/src/tools/package_descriptor/generated/*/*/build_stamp.h
scripts/build.sh tool
quietly package cpack -G DEB --config build/tool/CPackConfig.cmake -B build/tool
cp build/tool/*_"$version"_*.deb "$out/"
name=tova-fw-$version-linux-$(uname -m)
root=$(stage tool "$name")
tar -C "$root" --sort=name --owner=0 --group=0 --numeric-owner \
  --format=gnu -cf - "$name" | xz -9 >"$out/$name.tar.xz"

if [[ ${2:-} == --windows ]]; then
  scripts/build.sh windows
  name=tova-fw-$version-windows-x86_64
  root=$(stage windows "$name")
  rm -f "$out/$name.zip"
  (cd "$root" && find "$name" | LC_ALL=C sort |
    TZ=UTC zip -q -X -9 "$out/$name.zip" -@)
fi
