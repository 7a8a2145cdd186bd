#!/usr/bin/env bash
# Runs the example that runs a Java tool and compares what it prints:
#   run_tool.sh PROGRAM CLASS-FOLDER JAR JAVA-HOME SAXON PROBE [RUNNERS]
# The class folder and the jar hold ProcessProbe; SAXON is the jar of an XSLT processor. Windows programs run PROBE in
# place of java.
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1" "${@:7}"
classes=$2 jar=$3 home=$4 saxon=$5 probe=$6
java=() file=java
if $windows; then
  home=$folder/home jar=$(named "$folder/probe.jar") file=java.exe
  mkdir -p "$home/bin"
  cp "$probe" "$home/bin/$file"
  touch "$folder/probe.jar"
  java=(--java "$(named "$home")")
else
  export JAVA_HOME=$home
fi

expect 'help' 0 "usage: run_tool \[OPTION\]\.\.\. JAR \[ARGUMENT\]\.\.\.${any}Ctrl\+C and SIGTERM end the tool, too\. The exit code is the tool's own; 125 if it could not be run\." --help
expect 'nothing' 125 'run_tool: a jar or --class is missing; see --help'
expect 'no class' 125 'run_tool: a jar or --class is missing; see --help' --class
expect 'unknown option' 125 "run_tool: '--wrong' is no option; see --help" --wrong x "$jar"
expect 'option without its value' 125 'run_tool: --time needs a value' --time
expect 'time that is none' 125 "run_tool: --time needs a number of seconds, and not '1s'" --time 1s "$jar"
expect 'no time' 125 "run_tool: --time needs a number of seconds, and not '0'" --time 0 "$jar"
absent=$folder/not\ there.jar
expect 'jar that is not there' 125 "run_tool: Could not find the jar \"$(shown "$absent")\" for \".+\": .+" \
  "${java[@]}" "$(named "$absent")"
expect 'home that is none' 125 "run_tool: No bin/$file in \"$(shown "$folder")\"" --java "$(named "$folder")" "$jar"
expect 'class path of a jar' 125 'run_tool: a program that is a jar brings its own class path: .*' --path x "$jar"

printf 'Z\xc3\xbcrich' >"$folder/input"
if $windows; then
  probe=("${java[@]}" --class Probe)
  expect 'a jar' 3 "$(shown "$home")" "${java[@]}" --folder "$(named "$home")" "$jar" Probe folder exit 3
  expect 'a class' 0 'two words' --vm -Xmx64m --path "$(named "$home")" "${probe[@]}" says 'two words'
  expect 'input' 0 'Zürich' --input "$(named "$folder/input")" "${probe[@]}" echo
  expect 'what the tool complains about' 1 'wrong' "${probe[@]}" complains wrong exit 1
  expect 'a crash' 5 'run_tool: the tool crashed \(-1073741819\)' "${probe[@]}" exit -1073741819  # 0xC0000005
  expect 'a tool that takes too long' 124 \
    'run_tool: 1 s run_tool: 2 s .*readyrun_tool: the tool took too long and was ended' \
    --progress --time 20 "${probe[@]}" orderly 7 says ready sleep 600000
  echo "run_tool.sh: a real Java tool, and signals to this one, are left to Linux: a probe is run in place of java.exe"
  finish
  exit
fi

expect 'a jar' 3 "$folder" --folder "$folder" "$jar" property user.dir
expect 'a class' 3 '64m' --java "$home" --vm -Dsize=64m --path "$classes" --class ProcessProbe property size
expect 'input' 0 'hcirüZ' --input "$folder/input" "$jar" reverse
expect 'what Java complains about' 1 "Exception in thread \"main\" java\.lang\.IllegalArgumentException: wrong$any" "$jar" wrong
expect 'a tool that takes too long' 124 'ready\nhookrun_tool: the tool took too long and was ended' --time 6 "$jar" stop
expect 'progress' 124 'run_tool: 1 s run_tool: 2 s .*ready\nhookrun_tool: the tool took too long and was ended' --progress --time 6 "$jar" stop

# A signal to this tool ends Java, too.
for signal in TERM INT; do
  "$program" "$jar" stop >"$folder/output" 2>&1 </dev/null &
  tool=$!
  for ((i = 0; i < 100; i++)); do
    java=$(pgrep -P $tool) && grep -qz "$jar" "/proc/$java/cmdline" && sleep 2 && break
    sleep 0.1
  done
  kill -$signal $tool
  wait $tool
  code=$?
  printed=$(<"$folder/output")
  if [ $code -eq $((128 + $(kill -l $signal))) ] && [ "$printed" = $'ready\nhookrun_tool: interrupted' ] &&
     [ ! -e "/proc/$java" ]; then
    passed=$((passed + 1))
  else
    fail "$signal: exit code $code; printed:" "$printed"
  fi
done

# A tool of this machine: runs a style sheet on itself.
if [ -e "$saxon" ]; then
  cat >"$folder/answer.xsl" <<'EOF'
<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:param name="what"/>
  <xsl:template match="/">Grüezi <xsl:value-of select="$what, string-join(for $i in 1 to 3 return string($i * $i), ' ')"/></xsl:template>
</xsl:stylesheet>
EOF
  expect 'a tool of this machine' 0 'Grüezi Zürich 1 4 9' --vm -Xmx256m --time 60 "$saxon" \
    "-xsl:$folder/answer.xsl" "-s:$folder/answer.xsl" 'what=Zürich'
else
  echo "the tool of this machine is left out: there is no '$saxon'. Run scripts/setup.sh."
fi
finish
