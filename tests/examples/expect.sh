# shellcheck shell=bash
# What the scripts that run an example share, to be sourced:
#   expect.sh PROGRAM [-- RUNNER... -- RUNNER-WITHOUT-JAVA...]
# RUNNER runs a program of another system than this one, where it finds Java; the second, where it finds none.
# TORVAN_DRIVE is the machine's drive there. Leaves `folder`, which goes with the script, and `windows`, whether the
# program is one of Windows.
set -uo pipefail

program=$1
windows=false
runner=()
runner_without_java=()
# shellcheck disable=SC2034
[[ $program != *.exe ]] || windows=true
if [ $# -gt 1 ]; then
  shift 2
  while [ "$1" != -- ]; do
    runner+=("$1")
    shift
  done
  runner_without_java=("${@:2}")
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
passed=0
failed=0

# shellcheck disable=SC2034
any='(?s:.*)' # any text, line ends included

# expect NAME EXIT-CODE PRINTED ARGUMENT...: PRINTED is a Perl regular expression for all that is printed, in which a
# dot matches no line end.
expect() {
  local name=$1 code=$2 printed=${3//$'\n'/'\n'} actual=0 text
  shift 3
  "${runner[@]}" "$program" "$@" >"$folder/output" 2>&1 </dev/null || actual=$?
  text=$(tr -d '\r' <"$folder/output")
  if [ "$actual" -eq "$code" ] && printf '%s\0' "$text" | grep -Pzq -- "\A(?:$printed)\z"; then
    passed=$((passed + 1))
  else
    fail "$name: exit code $actual, expected $code; printed:" "$text"
  fi
}

fail() {
  failed=$((failed + 1))
  printf 'FAILED: %s\n%s\n' "$@"
}

# named PATH: a path of this machine, as the program knows it.
named() {
  local path=${TORVAN_DRIVE:-}$1
  $windows && path=${path//\//\\}
  printf '%s' "$path"
}

# shown PATH: what is printed for a path of this machine, as a regular expression.
shown() {
  printf '\\Q%s\\E' "$(named "$1")"
}

# Lets the program find no Java from now on; false where the machine does not let a user hide a folder.
hide_java() {
  if $windows; then
    runner=("${runner_without_java[@]}")
    return
  fi
  local hide='mount -t tmpfs none /usr/lib/jvm && exec "$@"'
  unshare -rm bash -c "$hide" - true 2>/dev/null && runner=(env -u JAVA_HOME unshare -rm bash -c "$hide" -)
}

finish() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
