#!/usr/bin/env bash
# Runs the README's first host and compares what it prints: java_hello.sh PROGRAM [RUNNERS]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

expect 'Java' 0 'Zürich
Ōsaka
java\.util\.regex\.PatternSyntaxException: Unclosed group near index 3
a\(b'

finish
