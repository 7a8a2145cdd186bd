#!/usr/bin/env bash
# Runs the example that launches Java and compares what it prints: launch_java.sh PROGRAM CLASS-FOLDER [RUNNERS]
# The class folder holds LaunchProbe.
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1" "${@:3}"
classes=$2

# reported NAME TEXT...: compares what the program wrote down.
reported() {
  local name=$1
  shift
  if printf '%s\0' "$@" | cmp -s - "$LAUNCH_PROBE_REPORT"; then
    passed=$((passed + 1))
  else
    fail "$name: the program received:" "$(tr '\0' '\n' <"$LAUNCH_PROBE_REPORT")"
  fi
}

usage='launch_java: usage: launch_java VERSION \[-cp PATH\]\.\.\. .* \[args\.\.\.\]'
expect 'no arguments' 2 "$usage"
expect 'no version' 2 "$usage" -cp x Main
expect 'unknown option' 2 "$usage" 1.8 --verbose Main
expect 'option without its value' 2 "$usage" 1.8 -cp
expect 'empty value' 2 "$usage" 1.8 -jar ''
expect 'property without value' 2 "launch_java: -D needs name=value, and not 'n'" 1.8 -D n Main
expect 'property without name' 2 'launch_java: Invalid system property name\.' 1.8 -D =v Main
expect 'property name with a space' 2 "launch_java: 'a b': a property name must not hold spaces or quotes" 1.8 -D 'a b=v' M
expect 'option with a space' 2 "launch_java: 'a b': an option must not hold spaces or quotes" 1.8 -X 'a b' Main
expect 'main class with a space' 2 "launch_java: 'a b': a main class must not hold spaces or quotes" 1.8 -X mx64m 'a b'
expect 'class path with a quote' 2 "launch_java: 'x\" -y': a class path must not hold tabs or quotes" 1.8 -cp 'x" -y' Main
expect 'class path with a tab' 2 "launch_java: 'x\ty': a class path must not hold tabs or quotes" 1.8 -cp $'x\ty' Main
expect 'main class that is a file of options' 2 "launch_java: '@x': a main class must not begin with @" 1.8 -X mx64m '@x'
expect 'time-out that is none' 2 "launch_java: --timeout needs a number of milliseconds, and not '1s'" 1.8 --timeout 1s Main

export LAUNCH_PROBE_REPORT="$folder/report"
expect 'version that is not installed' 2 \
  'launch_java: There is no installed Java VM which is compatible with the specified version\.' 999 Main
expect 'neither class nor jar' 2 'launch_java: Java application cannot be launched because neither main class name .*' 1.8
expect 'class that is not there' 1 "${any}NotThere$any" 1.8 -cp "$classes" NotThere

export LAUNCH_PROBE_PROPERTIES=a,b,c
expect 'a program' 0 '' 1.8 -cp "$classes" -cp "/my jars/x.jar" -D 'a=1 "2" \' -D 'b=' -D 'c=x=y' -X mx64m \
  --timeout 60000 LaunchProbe 'two words' '' 'say "hi" \' '*' -x
separator=:
$windows && separator=';'
reported 'a program' "$classes$separator/my jars/x.jar$separator" '1 "2" \' '' 'x=y' 'two words' '' 'say "hi" \' '*' -x
unset LAUNCH_PROBE_PROPERTIES

# Names that Java itself takes for an option, or for a file of options.
mkdir "$folder/names"
cd "$folder/names" || exit 1
jars=(-version @options '-showversion it.jar')
$windows || jars+=('@options "too" \')  # no name for a file of Windows
for jar in "${jars[@]}"; do
  cp "$classes/../launch probe.jar" "./$jar"
  expect "jar named $jar" 0 '' 1.8 -jar "$jar" @arguments -version
  reported "jar named $jar" "./$jar" @arguments -version
done
ln -s "$classes" @classes
expect 'class path named @classes' 0 '' 1.8 -cp @classes -cp @options LaunchProbe @arguments
reported 'class path named @classes' "./@classes$separator./@options$separator" @arguments
cd / || exit 1

LAUNCH_PROBE_EXIT=42 expect 'exit code' 42 '' 1.8 -cp "$classes" LaunchProbe
if $windows; then
  # What is launched there has no console to be stopped by.
  LAUNCH_PROBE_MILLISECONDS=60000 expect 'time-out' 0 \
    "${any}launch_java: the program ran longer than 1500 ms and was killed" 1.8 -cp "$classes" --timeout 1500 LaunchProbe
else
  # Java prints its threads when it is stopped.
  LAUNCH_PROBE_MILLISECONDS=60000 expect 'time-out' 130 \
    "${any}launch_java: the program ran longer than 1500 ms and was stopped" 1.8 -cp "$classes" --timeout 1500 LaunchProbe
  LAUNCH_PROBE_STUBBORN=1 LAUNCH_PROBE_MILLISECONDS=60000 expect 'time-out of a program that does not stop' 0 \
    "${any}launch_java: the program ran longer than 1500 ms and was killed" 1.8 -cp "$classes" --timeout 1500 LaunchProbe
fi
if hide_java; then
  expect 'no Java' 2 'launch_java: There is no installed Java VM on the current system\.' 1.8 Main
else
  echo "launch_java.sh: the run without Java is left out: this machine does not let a user hide a folder (unshare, mount)"
fi

finish
