#!/usr/bin/env bash
# Builds the example programs and lets them show what the library does: demo.sh [linux|windows] [TEXT-FILE]
# The Windows programs are run by Wine, with a Java runtime that is installed there.
set -euo pipefail

fail() {
  echo "demo.sh: $*" >&2
  exit 1
}

system=linux
case ${1:-} in
  linux | windows)
    system=$1
    shift
    ;;
esac
usage="usage: demo.sh [linux|windows] [TEXT-FILE]"
[ $# -le 1 ] || fail "$usage"
text=()
if [ $# -eq 1 ]; then
  [ -f "$1" ] || fail "there is no file '$1'; $usage"
  text=("$(realpath "$1")")
fi

cd "$(dirname "${BASH_SOURCE[0]}")/.."
targets=(host_java launch_java)
if [ "$system" = linux ]; then
  preset=linux
  suffix=
else
  preset=windows-mingw
  suffix=.exe
  targets+=(hotspot)
fi
build=build/$preset
scripts/setup.sh "$preset"

log=$(mktemp)
trap 'rm -f "$log"; windows-on-linux/wine-run --stop "$build/wine-java"' EXIT
echo "demo: configuring"
cmake --preset "$preset" >"$log" 2>&1 || { cat "$log"; fail "the build cannot be configured"; }
echo "demo: building the library and the examples"
cmake --build --preset "$preset" --target "${targets[@]}" >"$log" 2>&1 || { cat "$log"; fail "the build failed"; }

run() { # run PROGRAM [ARGUMENT]...
  if [ "$system" = linux ]; then
    "$@"
  else
    windows-on-linux/wine-run "$build/wine-java" "$@" | tr -d '\r'
  fi
}

if [ "$system" = windows ]; then
  echo "demo: installing a Java runtime under Wine"
  windows-on-linux/hotspot/install-java windows-on-linux/wine-run "$build/wine-java" "$build/windows-on-linux/hotspot/java" >"$log" 2>&1 ||
    { cat "$log"; fail "the Java runtime cannot be installed"; }
  echo "demo: what the registry says of it"
  run reg query 'HKLM\Software\JavaSoft\Java Runtime Environment' /v CurrentVersion | sed '/^$/d'
  run reg query 'HKLM\Software\JavaSoft\Java Runtime Environment\17.0' | sed '/^$/d'
fi

echo "demo: a native program hosts Java and has it count words"
run "$build/bin/host_java$suffix" "${text[@]}" || fail "host_java failed"

echo "demo: a native program launches Java on the same class"
run "$build/bin/launch_java$suffix" 1.8 -cp "$build/examples/classes" TextStatistics "${text[0]:-README.md}" || fail "launch_java failed"
