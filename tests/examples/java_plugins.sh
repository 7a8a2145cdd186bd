#!/usr/bin/env bash
# Runs the plug-in host on its plug-ins, and on jars that are none: java_plugins.sh PROGRAM HOST-CLASSES PLUGIN-FOLDER
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$1"
host=$2
plugins=$3

expect 'two plug-ins' 0 'shout: PEARS! APPLES! ORANGES!
sort: APPLES! ORANGES! PEARS!
unloaded: yes' "$host" "$plugins"

mkdir "$folder/mixed"
cp "$plugins/sort.jar" "$folder/mixed/"
echo 'not a jar' >"$folder/mixed/broken.jar"
expect 'a jar that is none' 0 'broken\.jar is no plug-in: java\.lang\.ClassNotFoundException: plugin\.Main .*
sort: apples oranges pears
unloaded: yes' "$host" "$folder/mixed"

mkdir "$folder/empty"
expect 'no plug-ins' 0 'unloaded: yes' "$host" "$folder/empty"
expect 'no arguments' 1 'java_plugins HOST-CLASSES PLUGIN-FOLDER'

finish
