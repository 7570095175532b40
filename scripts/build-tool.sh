#!/usr/bin/env bash
# Builds the optimised tool alone, without the tests and what they need, as
# build/tool/src/driver/tova_fw_builder.
set -euo pipefail
cd "$(dirname "$0")/.."

mkdir -p build
echo "Building the tool"
{
  cmake --preset tool && cmake --build --preset tool
} >build/tool.log 2>&1 || {
  cat build/tool.log
  exit 1
}
