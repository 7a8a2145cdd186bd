#!/usr/bin/env bash
# Makes the archives of a release and proves each from outside: package.sh [linux|windows-mingw|windows-msvc-abi]...;
# without a target all three. They are left in build/packages/, with a file of their checksums.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(linux windows-mingw windows-msvc-abi)

fail() {
  echo "package.sh: $*" >&2
  exit 1
}

scripts/setup.sh "${targets[@]}"
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
# The same sources in the same folder make the same archives: what is in them is as old as the last commit.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)}
export SOURCE_DATE_EPOCH

version=$(sed -n 's/^project(torvan VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
grep -q "^## $version\b" CHANGELOG.md || fail "CHANGELOG.md says nothing of version $version"

packages=build/packages
folder=$(mktemp -d)
cleanup() {
  rm -rf "$folder"
  for target in "${targets[@]}"; do
    [[ $target != windows-* ]] || windows-on-linux/wine-run --stop "build/$target/wine"
  done
}
trap cleanup EXIT
quietly() { "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; fail "$target: $*"; }; }

rm -rf "$packages"
mkdir -p "$packages"
for target in "${targets[@]}"; do
  echo "package: $target: building"
  quietly cmake --preset "$target"
  quietly cmake --build --preset "$target" --target torvan
  rm -rf "build/$target/archive"
  quietly cpack --config "build/$target/CPackConfig.cmake"

  echo "package: $target: proving the archive"
  archive=$(find "build/$target/archive" -maxdepth 1 -name "torvan-$version-*" ! -type d)
  mkdir "$folder/$target"
  quietly cmake -E chdir "$folder/$target" cmake -E tar xf "$PWD/$archive"
  TORVAN_PACKAGE=$(echo "$folder/$target"/torvan-*) quietly ctest --preset "$target" -R '^package_tests$'
  mv "$archive" "$packages"
done

(cd "$packages" && sha256sum torvan-* >"torvan-$version.sha256")
cat "$packages/torvan-$version.sha256"
