#!/usr/bin/env bash
# Runs the example that hosts Java and compares what it prints: host_java.sh PROGRAM [RUNNER...]
set -uo pipefail

program=$1
shift
runner=("$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
passed=0
failed=0

# expect NAME EXIT-CODE PATTERN ARGUMENT...: every line of PATTERN is a regular expression that some printed line matches.
expect() {
  local name=$1 code=$2 patterns=$3 actual=0 errors pattern missing=""
  shift 3
  "${runner[@]}" "$program" "$@" >"$folder/output" 2>&1 || actual=$?
  tr -d '\r' <"$folder/output" >"$folder/text"
  errors=$(grep -cvE '^(Java|Found in) ' "$folder/text")
  while read -r pattern; do
    grep -qE -- "$pattern" "$folder/text" || missing+=" [$pattern]"
  done <<<"$patterns"
  if [ "$actual" -eq "$code" ] && [ -z "$missing" ] && { [ "$code" -eq 0 ] || [ "$errors" -eq 1 ]; }; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: $name: exit code $actual, expected $code; not printed:$missing; printed:"
    cat "$folder/text"
  fi
}

printf 'The quick brown fox jumps. Does the LAZY dog jump? No!\n\nZwei Wörter: naïve 😀 quick http://x.org/a\n' >"$folder/text.txt"
: >"$folder/empty.txt"
printf 'this is no library\n' >"$folder/no-library"

usage='^host_java: usage: host_java \[--runtime PATH\] \[--class-path PATH\] \[--language TAG\] \[FILE\]$'
expect 'unknown option' 2 "$usage" --verbose
expect 'option without its value' 2 "$usage" --runtime
expect 'empty value' 2 "$usage" --language ''
expect 'two files' 2 "$usage" "$folder/text.txt" "$folder/text.txt"
expect 'missing file' 2 '^host_java: .*missing\.txt. cannot be read: give the path of a UTF-8 text file$' "$folder/missing.txt"
expect 'folder as file' 2 '^host_java: .* cannot be read: give the path' "$folder"
expect 'missing library' 2 '^host_java: Java Runtime library not found\. .*nowhere. should be the VM library of a Java runtime\.$' \
  --runtime "$folder/nowhere" "$folder/text.txt"
expect 'library that is none' 2 '^host_java: Java Runtime library not found\. .* should be the VM library' \
  --runtime "$folder/no-library" "$folder/text.txt"

if [ ${#runner[@]} -gt 0 ]; then
  expect 'no Java' 2 '^host_java: There is not any Sun JRE installed in the current system\. Install a Java runtime' "$folder/text.txt"
  echo "host_java.sh: the runs with a Java VM are left out: there is no Windows Java VM on this machine"
else
  expect 'class that is not there' 2 "^host_java: the Java class TextStatistics is not in '$folder': name the folder .* --class-path$" \
    --class-path "$folder" "$folder/text.txt"
  expect 'language that is none' 2 "^host_java: Java refuses the language '!' .*Ill.*: give a tag such as en-GB" \
    --language '!' "$folder/text.txt"
  expect 'a text' 0 '^Java       [0-9.]+.*, .* VM$
^Found in   /
^Text       .*text\.txt, language de-DE$
^Lines      3$
^Words      18$
^Sentences  4$
^Links      1$
^Letters per word  3,944$
^Most frequent long word  "quick", 2 times$
^Caught     torvan::jni::CJavaVmException: Failed to get the method id of the getClass \(\) method of the exception occured\.$
^Cleared    java\.lang\.NoSuchMethodError: .*getClass
^Reason     the text has 18 words, fewer than 1000000000$' --language de-DE "$folder/text.txt"
  expect 'an empty text' 0 '^Words      0$' "$folder/empty.txt"
  expect 'a given library' 0 '^Words      18$' \
    --runtime "$(dirname "$(dirname "$(readlink -f "$(command -v java)")")")/lib/server/libjvm.so" "$folder/text.txt"
  expect 'the default text' 0 '^Words      [0-9,]+$'
  hide_java='mount -t tmpfs none /usr/lib/jvm && exec "$@"'
  if unshare -rm bash -c "$hide_java" - true 2>/dev/null; then
    runner=(env -u JAVA_HOME unshare -rm bash -c "$hide_java" -)
    expect 'no Java' 2 '^host_java: There is not any Sun JRE installed in the current system\. Install a Java runtime' "$folder/text.txt"
  else
    echo "host_java.sh: the run without Java is left out: this machine lets nobody hide a folder (unshare, mount)"
  fi
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
