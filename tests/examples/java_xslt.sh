#!/usr/bin/env bash
# Runs the example on XSLT and compares what it prints: java_xslt.sh PROGRAM SAXON-JAR
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1"
jar=$2

expect 'a transformation and two that fail' 0 'Hello A B L!
java\.lang\.RuntimeException: the host has no no/such\.xsl
error 1: Cannot find a 0-argument function named Q\{urn:host\}missing\(\)
javax\.xml\.transform\.TransformerConfigurationException: .*' "$jar"
expect 'no jar' 1 '.*nowhere\.jar is not there.*' nowhere.jar

finish
