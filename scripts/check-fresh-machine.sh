#!/usr/bin/env bash
# Tries, in a bare Debian 12 that has only bash, apt-get and git beside the
# essentials: the two commands of the README, twice each, the packages of all
# further checks, and the Debian package. Needs root, debootstrap and a Debian
# mirror; takes some minutes. The commit is what is tried, not the work tree.
# MIRROR names another mirror.
set -euo pipefail
cd "$(dirname "$0")/.."

mirror=${MIRROR:-http://deb.debian.org/debian}
root=$(mktemp -d)
clean_up() {
  umount "$root/proc" 2>/dev/null || true
  rm -rf --one-file-system "$root" "$root.log"
}
trap clean_up EXIT
chmod 755 "$root"

debootstrap --variant=minbase --include=git bookworm "$root" "$mirror" \
  >"$root.log"
cp /etc/resolv.conf "$root/etc/"
# A mirror may be a copy of some age.
echo 'Acquire::Check-Valid-Until "false";' >"$root/etc/apt/apt.conf.d/99age"
mount -t proc proc "$root/proc"
git clone -q . "$root/checkout"

inside() { chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin \
  bash -c "cd /checkout && $1"; }

echo "== as nobody, who may not install"
{
  inside 'setpriv --reuid=65534 --regid=65534 --clear-groups ./run-demo.sh' 2>&1 ||
    true
} |
  grep '^Please install these packages first: g++ cmake ninja-build '
echo "== the demo"
inside 'time ./run-demo.sh'
echo "== the tests"
inside 'time ./run-tests.sh'
echo "== both again"
inside 'time (./run-demo.sh && ./run-tests.sh)'
[[ -z $(git -C "$root/checkout" status --porcelain) ]] || {
  echo "The commands leave files in the tree" >&2
  exit 1
}

echo "== what the further checks need, which nothing is missing of then"
kinds='check cache bench port windows port-s390x release sample'
inside "scripts/set-up.sh $kinds"
[[ -z $(inside "scripts/set-up.sh $kinds") ]] || {
  echo "A package doesn't bring what it is installed for" >&2
  exit 1
}

echo "== the package"
scripts/set-up.sh build companion check
scripts/check-package.sh
cp build/packages/*.deb "$root/tmp/"
inside 'apt-get -qq install -y --no-install-recommends man-db /tmp/*.deb \
  >/dev/null && cd / && tova_fw_builder hash_key pub \
  /checkout/examples/audio_firmware/keys/test-key-public.key &&
  man -P cat tova_fw_builder | head -n 5'
echo "A fresh machine does it all"
