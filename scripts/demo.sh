#!/usr/bin/env bash
# Builds the example programs and lets them show what the library does: demo.sh [TEXT-FILE]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
  echo "demo.sh: $*" >&2
  exit 1
}

[ $# -le 1 ] || fail "usage: demo.sh [TEXT-FILE]"
scripts/setup.sh linux || fail "what the build needs could not be installed"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "demo: configuring"
cmake --preset linux >"$log" 2>&1 || { cat "$log"; fail "the build cannot be configured"; }
echo "demo: building the library and the examples"
cmake --build --preset linux --target host_java launch_java >"$log" 2>&1 || { cat "$log"; fail "the build failed"; }

echo "demo: a native program hosts Java and has it count words"
build/linux/bin/host_java "$@" || fail "host_java failed"

echo "demo: a native program launches Java on the same class"
build/linux/bin/launch_java 1.8 -cp build/linux/examples/classes TextStatistics "${1:-README.md}" || fail "launch_java failed"
