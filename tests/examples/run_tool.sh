#!/usr/bin/env bash
# Runs the example that runs a Java tool and compares what it prints: run_tool.sh PROGRAM CLASS-FOLDER JAR JAVA-HOME
# The class folder and the jar hold ProcessProbe.
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1"
classes=$2 jar=$3 home=$4
export JAVA_HOME=$home

expect 'help' 0 "usage: run_tool \[OPTION\]\.\.\. JAR \[ARGUMENT\]\.\.\.${any}The exit code is the tool's own; 125 if it could not be run\." --help
expect 'nothing' 125 'run_tool: a jar or --class is missing; see --help'
expect 'no class' 125 'run_tool: a jar or --class is missing; see --help' --class
expect 'unknown option' 125 "run_tool: '--wrong' is no option; see --help" --wrong x "$jar"
expect 'option without its value' 125 'run_tool: --time needs a value' --time
expect 'time that is none' 125 "run_tool: --time needs a number of seconds, and not '1s'" --time 1s "$jar"
expect 'no time' 125 "run_tool: --time needs a number of seconds, and not '0'" --time 0 "$jar"
expect 'jar that is not there' 125 'run_tool: Could not find the jar ".*/not there.jar" for ".*": No such file or directory' "$folder/not there.jar"
expect 'home that is none' 125 "run_tool: No bin/java in \"$folder\"" --java "$folder" "$jar"
expect 'class path of a jar' 125 'run_tool: a program that is a jar brings its own class path: .*' --path x "$jar"

expect 'a jar' 3 "$folder" --folder "$folder" "$jar" property user.dir
expect 'a class' 3 '64m' --java "$home" --vm -Dsize=64m --path "$classes" --class ProcessProbe property size
printf 'Z\xc3\xbcrich' >"$folder/input"
expect 'input' 0 'hcirüZ' --input "$folder/input" "$jar" reverse
expect 'what Java complains about' 1 "Exception in thread \"main\" java\.lang\.IllegalArgumentException: wrong$any" "$jar" wrong
expect 'a tool that takes too long' 124 'ready\nhookrun_tool: the tool took too long and was ended' --time 3 "$jar" stop
expect 'progress' 124 'run_tool: 1 s run_tool: 2 s .*ready\nhookrun_tool: the tool took too long and was ended' --progress --time 3 "$jar" stop
finish
