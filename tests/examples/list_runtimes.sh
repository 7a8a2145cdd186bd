#!/usr/bin/env bash
# Runs the example that lists runtimes, on folders made up here: list_runtimes.sh PROGRAM [RUNNERS]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

if $windows; then
  library=bin/server/jvm.dll java=bin/java.exe compiler=bin/javac.exe
  header=MZ$(printf '\\0%.0s' {1..58})'\x40\0\0\0PE\0\0'
  own=$header'\x64\x86' foreign=$header'\x64\xAA'
else
  library=lib/server/libjvm.so java=bin/java compiler=bin/javac
  header='\x7FELF\x02\x01\0\0\0\0\0\0\0\0\0\0\x03\0'
  own=$header'\x3E\0' foreign=$header'\xB7\0'
fi

# home NAME VERSION VENDOR HEADER: a runtime in the folder.
home() {
  mkdir -p "$folder/java/$1/$(dirname "$library")" "$folder/java/$1/bin"
  printf 'IMPLEMENTOR="%s"\nJAVA_VERSION="%s"\n' "$3" "$2" >"$folder/java/$1/release"
  printf '%b' "$4" >"$folder/java/$1/$library"
  touch "$folder/java/$1/$java"
}

mkdir "$folder/java"
all=$(shown "$folder/java")
expect 'an empty folder' 1 'No Java runtime was found\.' "$TORVAN_DRIVE$folder/java"
home old 1.8.0_391 '' "$own"
home new 17.0.9 'Maker Söhne' "$own"
touch "$folder/java/new/$compiler"
home other 21 Maker "$foreign"
old=$(shown "$folder/java/old") new=$(shown "$folder/java/new") other=$(shown "$folder/java/other")
expect 'a table' 0 "  VERSION    KIND  CPU     VENDOR       HOME +FOUND IN
\\* 17\\.0\\.9     JDK   x86_64  Maker Söhne  $new  $all
  1\\.8\\.0_391  JRE   x86_64  -            $old  $all

Refused:
  $other
    its VM library is for aarch64, and this program for x86_64 \\($all\\)" "$TORVAN_DRIVE$folder/java"
expect 'a wrong command line' 2 'usage: list_runtimes \[FOLDER\]' --all
expect 'too many folders' 2 'usage: list_runtimes \[FOLDER\]' a b
expect 'a folder that is not there' 1 "No Java runtime was found\\.

Refused:
  \\Q$TORVAN_DRIVE$folder/nowhere\\E
    [^\\n]+ \\(\\Q$TORVAN_DRIVE$folder/nowhere\\E\\)" "$TORVAN_DRIVE$folder/nowhere"

if $windows; then
  expect 'the machine' 1 "No Java runtime was found\\.$any"
else
  JAVA_HOME=$folder/java/old expect 'the machine' 0 "  VERSION $any\\n\\* 1\\.8\\.0_391 +JRE +x86_64 +- +$old +JAVA_HOME$any"
fi

finish
