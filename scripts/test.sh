#!/usr/bin/env bash
# Builds the library and runs all its tests: test.sh [TARGET]..., with linux, linux-asan, linux-tsan, linux-fuzz,
# windows-mingw and windows-msvc-abi as targets. linux-tsan tests torvan::java alone.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(linux linux-fuzz windows-mingw windows-msvc-abi)

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
    for prefix in wine wine-java; do cmake/wine-run --stop "build/$target/$prefix"; done
  done
}
trap cleanup EXIT

for target in "${targets[@]}"; do
  echo "test: $target: configuring"
  cmake --preset "$target" >"$log" 2>&1 || { cat "$log"; fail "$target cannot be configured"; }
  echo "test: $target: building"
  cmake --build --preset "$target" >"$log" 2>&1 || { cat "$log"; fail "$target does not build"; }
done
for target in "${targets[@]}"; do
  echo "test: $target: running the tests"
  ctest --preset "$target" || fail "$target has failing tests"
done
