#!/usr/bin/env bash
# Installs what is missing, builds the optimised tools and runs the sample
# firmware through every command. Ends with a table of the files made, each
# with its size and SHA-256, and with what the companion shows of them.
set -euo pipefail
cd "$(dirname "$0")"

scripts/set-up.sh build companion
scripts/build.sh tool
scripts/run-sample.sh build/tool/src/driver/tova_fw_builder build/demo \
  build/tool/src/companion/tova_fw
