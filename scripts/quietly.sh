# quietly LOG COMMAND...
# Runs the command, with what it says in build/LOG.log. If it fails, shows that
# and ends the script. Sourced by scripts that stand in the tree's root.
# shellcheck shell=bash
quietly() {
  local log=build/$1.log
  shift
  mkdir -p build
  "$@" >"$log" 2>&1 || {
    cat "$log"
    echo "Failed: $* (see $log)" >&2
    exit 1
  }
}
