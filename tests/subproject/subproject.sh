#!/usr/bin/env bash
# Builds a host that has the library as a part of itself: subproject.sh FOLDER [CMAKE-OPTION]...
# The host in host/ is configured with the options, built below the folder, tested and installed.
set -euo pipefail

folder=$1
options=(-DCMAKE_BUILD_TYPE= "${@:2}")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source=$(dirname "$(dirname "$here")")
rm -rf "$folder"
mkdir -p "$folder"

fail() {
  echo "FAILED: $*"
  exit 1
}
quietly() { # quietly COMMAND...: what it prints counts when it fails
  "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; fail "$*"; }
}
# build_host NAME TESTS [CMAKE-OPTION]...: a host with everything that a build makes, whose own tests are so many.
build_host() {
  quietly cmake -S "$here/host" -B "$folder/$1" "-DTORVAN_SOURCE=$source" "${options[@]}" "${@:3}"
  cp "$folder/log" "$folder/$1.configured"
  quietly cmake --build "$folder/$1"
  quietly ctest --test-dir "$folder/$1" --output-on-failure --no-tests=error
  grep -q " tests passed, 0 tests failed out of $2$" "$folder/log" || { cat "$folder/log"; fail "$1: tests that are not the host's"; }
}
# expect_installed NAME FILE...: what the host in the folder of that name installs is these files.
expect_installed() {
  quietly cmake --install "$folder/$1" --prefix "$folder/$1-installed"
  local found
  found=$(cd "$folder/$1-installed" && find . -type f -o -type l | sort)
  [ "$found" = "$(printf './%s\n' "${@:2}")" ] || fail "$1: installed is"$'\n'"$found"
}

build_host added 1
expect_installed added bin/host
for unwanted in CPackConfig.cmake compile_commands.json torvan/package torvan/examples torvan/googletest \
  torvan/src/java/libtorvan_java.a; do
  [ ! -e "$folder/added/$unwanted" ] || fail "added: the build has $unwanted"
done

# The same again by FetchContent, from a host that has its own libraries static, compiles several of its sources as one, and
# installs this one with itself.
build_host fetched 2 -DFETCH=ON -DBUILD_SHARED_LIBS=OFF -DCMAKE_UNITY_BUILD=ON -DTORVAN_INSTALL=ON
message='torvan: BUILD_SHARED_LIBS is OFF, but torvan, mirel, rx and place are built as shared libraries.'
grep -qF "$message" "$folder/fetched.configured" || { cat "$folder/fetched.configured"; fail "fetched: no word on shared libraries"; }
quietly cmake --install "$folder/fetched" --prefix "$folder/fetched-installed"
for wanted in bin/host include/torvan/Torvan.h lib/cmake/torvan/torvanConfig.cmake share/doc/torvan/LICENSE; do
  [ -e "$folder/fetched-installed/$wanted" ] || fail "fetched: $wanted is not installed"
done
[ ! -e "$folder/fetched-installed/share/doc/host" ] || fail "fetched: documents are the host's"

# A system that there is no code for: the first thing that is wrong is said, with what to write.
if cmake -S "$here/host" -B "$folder/unknown" "-DTORVAN_SOURCE=$source" "${options[@]}" -DCMAKE_SYSTEM_NAME=FreeBSD \
  >"$folder/log" 2>&1; then
  fail "unknown: a system without code is configured"
fi
for words in 'There is no code for FreeBSD.' 'torvan_system_folder, in cmake/TorvanJava.cmake' 'src/platform/System.h'; do
  tr -s ' \n' ' ' <"$folder/log" | grep -qF "$words" || { cat "$folder/log"; fail "unknown: no word of \"$words\""; }
done
