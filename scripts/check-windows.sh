#!/usr/bin/env bash
# Builds both programs for 64-bit Windows and runs them under wine: the sample
# firmware through every command in a folder with a name beyond ASCII, and a
# table of single commands. Files, standard output and status must equal those
# of this machine's own build, but for the form of absolute paths.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build companion windows
scripts/build.sh tool
scripts/build.sh windows -DTOVA_WERROR=ON

work=$(mktemp -d)
# wine takes names of files by the locale, and the one of a bare system is C.
export LC_ALL=C.UTF-8
export WINEPREFIX=$work/prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
trap 'wineserver -k || true; rm -rf "$work"' EXIT
quietly windows-wine wineboot --init

# Nothing but libraries that every Windows has.
for program in driver/tova_fw_builder companion/tova_fw; do
  foreign=$(x86_64-w64-mingw32-objdump -p "build/windows/src/$program.exe" |
    sed -n 's/.*DLL Name: //p' |
    grep -Eivx '(kernel32|msvcrt|shell32|advapi32)\.dll' || true)
  [[ -z $foreign ]] || {
    echo "$program wants $foreign" >&2
    exit 1
  }
done

mkdir "$work/bin"
wrap() {  # wrap NAME COMMAND...: makes a program of the command
  printf '#!/bin/sh\nexec%s "$@"\n' "$(printf ' "%s"' "${@:2}")" >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}
for program in driver/tova_fw_builder companion/tova_fw; do
  wrap "$(basename $program)-linux" "$PWD/build/tool/src/$program"
  wrap "$(basename $program)-windows" \
    wine "$PWD/build/windows/src/$program.exe"
done

# as_here FILE...: brings paths of Windows into the form of this machine. Nothing
# else changes, so that a carriage return shows.
as_here() { sed -i -e 's/Z:\([\\/]\)/\1/g' -e 's/\\/\//g' "$@"; }

# The packages name the minute in which the tool was compiled.
same() { diff -r -I '^# TOVA FW Image Builder ver ' "$@"; }

# The folders' name is part of paths in logs: both run in the same.
home=$work/日本-ü
mkdir -p "$home/scripts"
cp -r examples "$home/"
cp scripts/run-sample.sh "$home/scripts/"
for system in linux windows; do
  echo "Running the sample firmware ($system)"
  quietly "windows-sample-$system" "$home/scripts/run-sample.sh" \
    "$work/bin/tova_fw_builder-$system" "$home/out" "$work/bin/tova_fw-$system"
  mv "$home/out" "$work/$system"
  grep -Ev '\.(pkg|d) +[0-9]' "build/windows-sample-$system.log" \
    >"$work/$system/shown.txt"
done
as_here "$work"/windows/logs/* "$work"/windows/*/*.d
same "$work/linux" "$work/windows"
echo "$(find "$work/linux" -type f | wc -l) files of the sample are the same"

# One command a line. Words are split at blanks; what is in quotes stays
# together, and reaches the program as it stands.
cases=0
run_cases() {  # run_cases PROGRAM: lines on the standard input
  local program=$1 line system status
  while IFS= read -r line; do
    for system in linux windows; do
      rm -rf "$work/case"
      mkdir -p "$work/case/über"
      cp -r examples/audio_firmware/keys "$work/linux/gen-1.5" "$work/case/"
      cp -r "$work/case/keys" "$work/case/über/鍵"
      status=0
      (cd "$work/case" &&
        eval "$work/bin/$program-$system $line" >log 2>errors </dev/null) ||
        status=$?
      echo "$status" >"$work/case/status"
      rm -rf "$work/case-$system"
      mv "$work/case" "$work/case-$system"
    done
    # What the companion finds in folders, it names as the system does.
    [[ $program == tova_fw_builder ]] ||
      as_here "$work/case-windows/log" "$work/case-windows/errors"
    same "$work/case-linux" "$work/case-windows" || {
      echo "Under Windows this differs: $program $line" >&2
      exit 1
    }
    ((cases += 1))
  done
}
run_cases tova_fw_builder <<'END'

-v
-v nothing
sign
sign debug none gen-1.5/firmware.man out.man
sign debug keys/test-key-pair.key gen-1.5/firmware.man über/出.man
-v sign release über/鍵/test-key-pair.key gen-1.5/firmware.man 出.man
verify gen-1.5/firmware.man.signed
verify gen-1.5/firmware.man
hash_key pub über/鍵/test-key-public.key
hash_key pub keys
hash_key pub '*'
hash_key pub 'with "quotes" and \'
write_c über/鍵/test-key-public.key über/鍵.c
split gen-1.5/flash.img über/bank_α über/bank_β
make_hex gen-1.5/flash.img über/flash.hex 64
make_hex gen-1.5/flash.img flash.hex 63
build 1 2 3
build_img none gen-1.5/ out.img
asm none out.bin
END
run_cases tova_fw <<'END'

--version
show gen-1.5/firmware.man.signed gen-1.5/firmware.pkg
show --json über/鍵/test-key-public.key
show none
check gen-1.5
diff gen-1.5/firmware.man gen-1.5/firmware.man.signed
diff keys über/鍵
key show über/鍵/test-key-public.key
to-sign gen-1.5/firmware.man --debug -o über/出.bin
to-sign gen-1.5/firmware.man --release --hex
END
echo "$cases commands do the same under Windows"
