#!/usr/bin/env bash
# Runs the example that hosts Java and compares what it prints: host_java.sh PROGRAM [RUNNERS]
# TORVAN_TEST_LIBJVM is the library of a Java VM.
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

printf 'The quick brown fox jumps. Does the LAZY dog jump? No!\n\nZwei Wörter: naïve 😀 quick http://x.org/a\n' >"$folder/text.txt"
: >"$folder/empty.txt"
printf 'this is no library\n' >"$folder/no-library"

usage='host_java: usage: host_java \[--runtime PATH\] \[--class-path PATH\] \[--language TAG\] \[FILE\]'
expect 'unknown option' 2 "$usage" --verbose
expect 'option without its value' 2 "$usage" --runtime
expect 'empty value' 2 "$usage" --language ''
expect 'two files' 2 "$usage" "$folder/text.txt" "$folder/text.txt"
expect 'missing file' 2 'host_java: .*missing\.txt. cannot be read: give the path of a UTF-8 text file' "$folder/missing.txt"
expect 'folder as file' 2 'host_java: .* cannot be read: give the path .*' "$folder"
expect 'missing library' 2 'host_java: Java Runtime library not found\. .*nowhere. should be the VM library of a Java runtime\.' \
  --runtime "$folder/nowhere" "$folder/text.txt"
expect 'library that is none' 2 'host_java: Java Runtime library not found\. .* should be the VM library .*' \
  --runtime "$folder/no-library" "$folder/text.txt"

java='Java       [0-9.]+.*, .* VM\nFound in   /.*'
# The error and what was printed before it reach a file in either order.
beside_java() {
  printf '%s\n%s|%s\n%s' "$1" "$java" "$java" "$1"
}
expect 'class that is not there' 2 \
  "$(beside_java "host_java: the Java class TextStatistics is not in '$folder': name the folder .* --class-path")" \
  --class-path "$folder" "$folder/text.txt"
expect 'language that is none' 2 \
  "$(beside_java "host_java: Java refuses the language '!' .*Ill.*: give a tag such as en-GB.*")" \
  --language '!' "$folder/text.txt"
expect 'a text' 0 "$java"'
Text       .*text\.txt, language de-DE
Lines      3
Words      18
Sentences  4
Links      1
Letters per word  3,944
Most frequent long word  "quick", 2 times
Caught     torvan::jni::CJavaVmException: Failed to get the method id of the getClass \(\) method of the exception occured\.
Cleared    java\.lang\.NoSuchMethodError: .*getClass.*
Reason     the text has 18 words, fewer than 1000000000' --language de-DE "$folder/text.txt"
expect 'an empty text' 0 "$any\nWords      0\n$any" "$folder/empty.txt"
expect 'a given library' 0 "$any\nWords      18\n$any" --runtime "$TORVAN_TEST_LIBJVM" "$folder/text.txt"
expect 'the default text' 0 "$any\nWords      [0-9,]+\n$any"
if hide_java; then
  expect 'no Java' 2 'host_java: There is not any Sun JRE installed in the current system\. Install a Java runtime.*' \
    "$folder/text.txt"
else
  echo "host_java.sh: the run without Java is left out: this machine does not let a user hide a folder (unshare, mount)"
fi

finish
