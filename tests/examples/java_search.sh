#!/usr/bin/env bash
# Runs the example on full-text search and compares what it finds: java_search.sh PROGRAM LUCENE-JAR
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1"
jar=$2

expect 'searches' 0 '20000 documents
page 12345: 1
  12345  [1-9]\.[0-9]+  Page 12345 tells of the river and the river by the sea
zürich river: 1334
      3  0\.[0-9]+  Page 3 tells of Zürich and the river in the north
     18  0\.[0-9]+  Page 18 tells of Zürich and the river by the sea
no such: 0' "$jar"
expect 'no jar' 1 '.*nowhere\.jar is not there.*' nowhere.jar

finish
