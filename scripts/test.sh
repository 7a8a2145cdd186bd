#!/usr/bin/env bash
# Builds the library and runs all its tests: test.sh [TARGET]...; without a target linux and both kinds of Windows. Others
# are linux-asan, by clang, and linux-tsan, which tests torvan::java alone.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(linux windows-mingw windows-msvc-abi)

fail() {
  echo "test.sh: $*" >&2
  exit 1
}

scripts/setup.sh "${targets[@]}"
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

unset CL _CL_ LINK _LINK_  # clang-cl and lld-link read options from them

log=$(mktemp)
cleanup() {
  rm -f "$log"
  for target in "${targets[@]}"; do
    for prefix in wine wine-java; do windows-on-linux/wine-run --stop "build/$target/$prefix"; done
  done
}
trap cleanup EXIT

step() { # step TEXT: says what is done next
  echo "test: $target: $*"
}
quietly() { # quietly FAILURE COMMAND...: what it prints counts when it fails
  time "${@:2}" >"$log" 2>&1 || { cat "$log"; fail "$target $1"; }
}
remarks() { # remarks FILE: what the file says of warnings, and of what is not done and why
  {
    grep -hE 'left (out|to) |warning: ' "$1" || true
    awk '/: Skipped\r?$/ { getline; print "skipped: " $0 }' "$1"
  } | tr -d '\r' | sort -u
}
TIMEFORMAT='  took %0R s: %0U s of processor time, and %0S s of the system'

for target in "${targets[@]}"; do
  step configuring
  quietly 'cannot be configured' cmake --preset "$target"
  remarks "$log"
  step building
  quietly 'does not build' cmake --build --preset "$target"
  remarks "$log"
done
for target in "${targets[@]}"; do
  step 'running the tests'
  time ctest --preset "$target" || fail "$target has failing tests"
  remarks "build/$target/Testing/Temporary/LastTest.log"
done
