#!/usr/bin/env bash
# Runs the example with threads and compares what it prints: threads.sh PROGRAM [RUNNERS]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

for line in {1..200}; do printf 'the quick brown fox %s\n\n' "$line"; done >"$folder/text.txt"
: >"$folder/empty.txt"

usage='threads: usage: threads \[THREADS \[FILE\]\], with 1 to 64 threads'
for count in 0 65 x '' 100; do expect "'$count' threads" 2 "$usage" "$count"; done
expect 'too many arguments' 2 "$usage" 2 "$folder/text.txt" x
expect 'missing file' 2 'threads: .*missing\.txt. cannot be read: give the path of a UTF-8 text file' 2 "$folder/missing.txt"

expect 'one thread' 0 '800 words in 400 lines, counted by 1 threads' 1 "$folder/text.txt"
expect 'more threads than lines' 0 '0 words in 0 lines, counted by 3 threads' 3 "$folder/empty.txt"
for run in {1..10}; do
  expect "run $run with 8 threads" 0 '800 words in 400 lines, counted by 8 threads' 8 "$folder/text.txt"
done
expect 'the defaults' 0 '[0-9]+ words in [0-9]+ lines, counted by 8 threads'
if hide_java; then
  expect 'no Java' 2 "$any"'threads: mirel::jni::CJavaRuntimeException: There is not any Sun JRE installed .*' 2 \
    "$folder/text.txt"
else
  echo "threads.sh: the run without Java is left out: this machine does not let a user hide a folder (unshare, mount)"
fi

finish
