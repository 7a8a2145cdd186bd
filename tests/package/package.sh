#!/usr/bin/env bash
# Proves the package from outside: package.sh BUILD-FOLDER [CMAKE-OPTION]... -- [RUNNER]...
# Takes the unpacked archive that TORVAN_PACKAGE names, or else what the build installs. Projects that know nothing but
# the package are configured with the options, built and run. Of the environment, JAVA_HOME is a JDK, CXXFLAGS is
# for the compiler, CXX is the compiler if it takes options as GCC does, and EXAMPLES is ON to build the examples, too.
set -euo pipefail

build=$1
shift
options=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-DNDEBUG)  # optimising proves nothing of a package
while [ "$1" != -- ]; do
  options+=("$1")
  shift
done
runner=("${@:2}")
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$build/package-test
rm -rf "$folder"
mkdir -p "$folder"

fail() {
  echo "FAILED: $*"
  exit 1
}
quietly() { # quietly COMMAND...: what it prints counts when it fails
  "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; fail "$*"; }
}

package=${TORVAN_PACKAGE:-$folder/package}
[ -n "${TORVAN_PACKAGE:-}" ] || quietly cmake --install "$build" --prefix "$package"
options+=("-DCMAKE_PREFIX_PATH=$package")
# Where a Windows program finds DLLs that are not beside it.
export TORVAN_DLL_FOLDER="$package/bin"

program_suffix=
[ ! -f "$package/bin/torvan.dll" ] || program_suffix=.exe

# build_project SOURCE NAME [CMAKE-OPTION]...: configures and builds a project in the folder of that name.
build_project() {
  quietly cmake -S "$1" -B "$folder/$2" "${options[@]}" "${@:3}"
  quietly cmake --build "$folder/$2"
}
# run NAME: runs the program in the folder.
run() { "${runner[@]}" "$folder/$1$program_suffix" || fail "$1"; }

# refused WHAT MESSAGE COMMAND...: the command fails, and what it prints has the message.
refused() {
  if "${@:3}" >"$folder/log" 2>&1 || [[ $(tr -s ' \n' ' ' <"$folder/log") != *"$2"* ]]; then
    cat "$folder/log"
    fail "$1"
  fi
}

# The package knows no folder of the machine that made it. An archive's libraries are stripped, and the debug information
# beside them is written for everywhere.
places=("$package"/{include,lib/cmake,lib/pkgconfig})
[ -z "${TORVAN_PACKAGE:-}" ] || places=("$package")
mapfile -t -O "${#places[@]}" places < <(find "$package" -name '*.pdb')
if grep -rlF -e "$source" -e "$build" -e "$JAVA_HOME" "${places[@]}"; then
  fail "these files name folders of the build"
fi

# A host compiles the layer's sources in its own version of C++; the library's own build and the examples are C++17. Where
# it compiles several of its sources as one, none of the layer's is among them.
build_project "$source/tests/consumer" consumer -DCMAKE_CXX_STANDARD=23 -DCMAKE_UNITY_BUILD=ON
run consumer/foundation
run consumer/consumer
[ ! -e "$folder/consumer/java$program_suffix" ] || run consumer/java
[ "$EXAMPLES" != ON ] || build_project "$package/share/torvan/examples" examples

# pkg-config speaks to compilers of GCC's options.
if [ -n "${CXX:-}" ]; then
  export PKG_CONFIG_LIBDIR=$package/lib/pkgconfig
  read -ra flags <<<"${CXXFLAGS:-} $(pkg-config --define-variable=jdk="$JAVA_HOME" --cflags --libs torvan)"
  version="-DPACKAGE_VERSION=\"$(pkg-config --modversion torvan)\""
  quietly "$CXX" -std=c++17 "$version" -o "$folder/pkg_config$program_suffix" "$source/tests/consumer/consumer.cpp" "${flags[@]}"
  LD_LIBRARY_PATH=$package/lib run pkg_config

  read -ra flags <<<"$(pkg-config --define-variable=jdk=/nowhere --cflags torvan)"
  refused 'a JDK that pkg-config does not know' \
    'jni.h was not found, which is in a JDK: CMake takes JAVA_HOME, pkg-config --define-variable=jdk=FOLDER.' \
    "$CXX" -std=c++17 -fsyntax-only "$source/tests/consumer/consumer.cpp" "${flags[@]}"
fi

# On Linux, the libraries find each other without help, by names that carry the major version.
if [ -z "$program_suffix" ]; then
  found=$(ldd "$package/lib/libtorvan.so")
  for name in libmirel libRXRoot libPlaceLib; do
    [[ $found == *"$name.so.1 => $package/lib/$name.so.1 "* ]] || fail "$name.so.1 is not found"
  done
fi

refused 'a host without a JDK' \
  'No JDK with include/jni.h was found. Install one, or set JAVA_HOME or TORVAN_JDK to it.' \
  cmake -S "$source/tests/consumer" -B "$folder/no-jdk" "${options[@]}" -DTORVAN_JDK=/nowhere
refused 'a host that asks for what is not there' \
  'There is no component "jmi"; known components are torvan, mirel, rx, place, java.' \
  cmake -S "$source/tests/consumer" -B "$folder/no-component" "${options[@]}" '-DCOMPONENTS=torvan;jmi'
