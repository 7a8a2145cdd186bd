#!/usr/bin/env bash
# Runs the programs of the page on torvan::java and compares what they print: docs_java_page.sh PROGRAM [RUNNERS]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

expect 'Java' 0 '42 none
not 4
10
null
red
green
Java Platform API Specification
7
1 2
0 in use
apple
6
4 4
1 1
the same
the same
java\.lang\.NumberFormatException: For input string: "x"
java\.lang\.NoClassDefFoundError
1
1 from there
2
2 \[\]
ended'

finish
