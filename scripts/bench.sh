#!/usr/bin/env bash
# Measures what the library costs beside the same work by hand: bench.sh [--quick|--page] [JDK]...
# A JDK is the home folder of one; without any, each in /usr/lib/jvm is measured. Prints a table; the figures of each process
# stay in build/bench. --quick: one process with each JDK. --page: writes docs/performance.md and docs/performance.svg, with
# sizes, loading and a clean build of each target that BENCH_TARGETS names (linux). BENCH_PROCESSES: how many processes with
# each JDK, 3 unless set. Close what else runs on the machine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

processes=${BENCH_PROCESSES:-3}
page=false
jdks=()
for argument in "$@"; do
  case $argument in
    --quick) processes=1 ;;
    --page) page=true ;;
    -*)
      echo "bench.sh: unknown option '$argument'; known are --quick and --page" >&2
      exit 2
      ;;
    *) jdks+=("$argument") ;;
  esac
done
if [ ${#jdks[@]} -eq 0 ]; then
  mapfile -t jdks < <(for library in /usr/lib/jvm/*/lib/server/libjvm.so; do realpath "${library%/lib/server/libjvm.so}"; done | sort -u)
fi
for jdk in "${jdks[@]}"; do
  [ -f "$jdk/lib/server/libjvm.so" ] && [ -f "$jdk/release" ] || { echo "bench.sh: there is no Java VM in '$jdk'" >&2; exit 2; }
done

build=build/linux
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
  "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
}
scripts/setup.sh linux
echo "bench: building"
quietly cmake --preset linux
quietly cmake --build --preset linux --target bench

rm -rf build/bench
mkdir -p build/bench
for ((process = 1; process <= processes; ++process)); do
  for jdk in "${jdks[@]}"; do
    version=$(sed -nE 's/^JAVA_VERSION="(1\.)?([0-9]+).*/\2/p' "$jdk/release")
    echo "bench: Java $version, process $process of $processes"
    for program in host texts_23 empty launcher; do
      [ -x "$build/bin/bench_$program" ] || continue
      # The launcher takes the newest runtime, whatever this one is, and an empty VM needs none.
      [[ ! $program =~ ^(empty|launcher)$ ]] || [ "$jdk" = "${jdks[-1]}" ] || continue
      "$build/bin/bench_$program" --java="$jdk" --json="build/bench/${program%_23}-$version-$process.json"
    done
  done
done

if $page; then
  read -r -a targets <<<"${BENCH_TARGETS:-linux}"
  python3 bench/facts.py "$build" build/bench/facts.json "$processes" "${targets[@]}" "${jdks[@]}"
  python3 bench/report.py build/bench --write docs
  echo "bench: docs/performance.md and docs/performance.svg are written"
else
  python3 bench/report.py build/bench
fi
