#!/usr/bin/env bash
# Installs what building and testing needs and is not there yet: setup.sh
# [linux|linux-asan|linux-tsan|windows-mingw|windows-msvc-abi]...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(linux linux-asan windows-mingw windows-msvc-abi)

missing=()
need() { # need PACKAGE COMMAND...: the package is needed unless the command succeeds
  local package=$1
  shift
  "$@" >/dev/null 2>&1 || [[ " ${missing[*]-} " == *" $package "* ]] || missing+=("$package")
}

jdk_found() {
  [ -n "${JAVA_HOME:-}" ] && [ -f "$JAVA_HOME/include/jni.h" ] && return
  local javac
  javac=$(command -v javac) && [ -f "$(dirname "$(dirname "$(readlink -f "$javac")")")/include/jni.h" ]
}

clang_runtime_found() { compgen -G "/usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.$1-x86_64.a"; }

need_wine() { # to run Windows programs, and to build the Java that they find
  need wine64 test -x /usr/lib/wine/wine64
  need wine64-tools command -v wineg++-stable
  need libwine-dev test -e /usr/lib/x86_64-linux-gnu/wine/x86_64-unix/libkernel32.a
}

need g++ command -v g++
need cmake command -v cmake
need ninja-build command -v ninja
need pkgconf command -v pkg-config
need openjdk-17-jdk-headless jdk_found
need libh2-java test -f /usr/share/java/h2.jar
need liblucene8-java compgen -G '/usr/share/java/lucene-core-8*.jar'
need libsaxonhe-java test -f /usr/share/java/Saxon-HE.jar
need googletest test -f /usr/src/googletest/CMakeLists.txt
for target in "${targets[@]}"; do
  case $target in
    linux)
      need clang-format-14 command -v clang-format-14
      need libbenchmark-dev test -f /usr/include/benchmark/benchmark.h
      need python3 command -v python3
      ;;
    linux-asan)
      need clang command -v clang++
      need clang-tidy command -v clang-tidy
      need libclang-rt-14-dev clang_runtime_found asan
      need libclang-rt-14-dev clang_runtime_found fuzzer
      ;;
    linux-tsan) ;;
    windows-mingw)
      need g++-mingw-w64-x86-64-posix command -v x86_64-w64-mingw32-g++-posix
      need_wine
      ;;
    windows-msvc-abi)
      need clang-22 test -e /usr/lib/llvm-22/bin/clang-cl
      need lld-22 test -e /usr/lib/llvm-22/bin/lld-link
      need llvm-22 test -x /usr/lib/llvm-22/bin/llvm-rc
      need libc++-14-dev test -d /usr/lib/llvm-14/include/c++/v1
      need clang-tools-14 test -e /usr/lib/llvm-14/bin/clang-cl
      need python3 command -v python3
      need mingw-w64-x86-64-dev test -f /usr/x86_64-w64-mingw32/lib/libucrtbase.a
      need_wine
      ;;
    *)
      echo "setup.sh: unknown target '$target'; known are linux, linux-asan, linux-tsan, windows-mingw" \
        "and windows-msvc-abi" >&2
      exit 2
      ;;
  esac
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: everything needed for ${targets[*]} is installed"
  exit 0
fi

echo "setup: installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup.sh: run as root, or install: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
export DEBIAN_FRONTEND=noninteractive
if ! { "${as_root[@]}" apt-get update && "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  echo "setup.sh: apt-get could not install ${missing[*]}" >&2
  exit 1
fi
