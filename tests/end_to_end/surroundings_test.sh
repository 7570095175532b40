#!/usr/bin/env bash
# surroundings_test.sh TOOL [COMPANION]
# Odd surroundings: both programs behave as on an ordinary day, and end. Standard
# streams that are closed, full or left by their reader; a working directory that
# is gone; a locale that groups digits; no name or an empty one for the program;
# 4,000 arguments; names beyond what the system takes; links in a circle.
set -euo pipefail

tool=$(realpath "$1")
companion=${2:+$(realpath "$2")}
root=$(realpath "$(dirname "$0")/../..")
keys=$root/examples/audio_firmware/keys
pair=$keys/test-key-pair.key
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$root/scripts/run-sample.sh" "$tool" "$work/made" >/dev/null
manifest=$work/made/gen-1.5/firmware.man
cp "$manifest.signed" signed

die() {
  echo "FAILED: $1" >&2
  exit 1
}
# ends STATUS WHAT COMMAND...: with that status, within ten seconds; its standard
# output and errors go to the files log and errors.
ends() {
  local status=0
  timeout 10 "${@:3}" >log 2>errors || status=$?
  [[ $status == "$1" ]] || die "$2: status $status, not $1: $(tail -n 1 log errors)"
}

# The streams. What a command makes is whole in each case.
sign=("$tool" sign debug "$pair" "$manifest" out)
"${sign[@]}" >ordinary
signs() {  # signs WHAT COMMAND...
  rm -f out
  ends 0 "$@"
  cmp out signed || die "$1: the output isn't whole"
}
for streams in '<&-' '>&-' '2>&-' '<&- >&- 2>&-' '>/dev/full' '2>/dev/full' \
  '| true'; do
  signs "sign $streams" bash -c "\"\$@\" $streams" - "${sign[@]}"
done
nameless=(bash -c 'exec -a "" "$@"' -)
signs 'no name' "${nameless[@]}" "${sign[@]}"
cmp log ordinary

# The locale has no word in the matter: numbers in logs have no groups.
for locale in de_DE.UTF-8 en_IN.UTF-8 tr_TR.UTF-8 none; do
  signs "LANG=$locale" env LANG=$locale LC_ALL=$locale "${sign[@]}"
  cmp log ordinary
done

# Of too many parameters, those beyond the last are left alone.
mapfile -t many < <(seq 4000)
signs '4,000 parameters' "${sign[@]}" "${many[@]}"

# Where the working directory is gone, absolute names serve as ever.
gone() {  # gone COMMAND...
  mkdir -p "$work/gone"
  (cd "$work/gone" && rmdir "$work/gone" && "$@")
}
rm -f out
gone "$tool" sign debug "$pair" "$manifest" "$work/out" >log ||
  die 'the working directory is gone'
cmp out signed
status=0
gone "$tool" sign debug "$pair" "$manifest" "out" >log || status=$?
[[ $status == 0 && ! -e $work/gone ]] || die "made in a folder that is gone"
status=0
gone "$tool" buildrom "$root/examples/audio_firmware/definitions/rom.def" \
  "$work/" "$work/made/rom/rom.elfs" "$work/rom" >log || status=$?
[[ $status == 251 ]] || die "a build in a folder that is gone: status $status"
grep -qx 'Error: Cannot get current working directory' log

# Names that no system takes, links in a circle, and a folder as a file.
long=$(printf '%05000d' 0)
ln -s loop loop
for name in "$long" "$long/$long" loop . ''; do
  ends 251 "input ${name:0:9}" "$tool" verify "$name"
  [[ $(tail -n 1 log) == "Error: Failed to open file: $name" ]] ||
    die "verify ${name:0:9}: $(tail -n 1 log | cut -c1-60)"
  # An output that can't be made is no failure of the run.
  ends 0 "output ${name:0:9}" "$tool" sign debug "$pair" "$manifest" "$name"
done

[[ -n $companion ]] || exit 0
show=("$companion" show signed)
"${show[@]}" >ordinary
for streams in '<&-' '2>&-' '2>/dev/full'; do
  ends 0 "show $streams" bash -c "\"\$@\" $streams" - "${show[@]}"
  cmp log ordinary
done
# An answer that nobody got is trouble.
for streams in '>&-' '<&- >&- 2>&-' '>/dev/full'; do
  ends 2 "show $streams" bash -c "\"\$@\" $streams" - "${show[@]}"
done
ends 0 'show, no name' "${nameless[@]}" "${show[@]}"
cmp log ordinary
ends 2 'no command' "${nameless[@]}" "$companion"
for locale in de_DE.UTF-8 en_IN.UTF-8 none; do
  ends 0 "show, LANG=$locale" env LANG=$locale LC_ALL=$locale "${show[@]}"
  cmp log ordinary
done
mapfile -t many < <(yes signed | head -n 4000)
ends 0 'show 4,000 files' "$companion" show "${many[@]}"
gone "$companion" show "$work/signed" >log || die 'the working directory is gone'
sed "s|$work/||" log | cmp - ordinary
for name in "$long" "$long/$long" loop; do
  ends 2 "show ${name:0:9}" "$companion" show "$name"
  ends 2 "to-sign -o ${name:0:9}" \
    "$companion" to-sign "$manifest" --debug -o "$name/x"
done
