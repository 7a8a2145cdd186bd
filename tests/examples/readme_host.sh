#!/usr/bin/env bash
# Runs the README's host and compares what it prints: readme_host.sh PROGRAM [WINE-RUN PREFIX JAVA-PREFIX]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

expect 'Java' 0 'HELLO FROM JAVA 4'
if hide_java; then
  # The library prints the cause, the failure that the host catches comes after it.
  expect 'no Java' 1 'mirel::base::win::CWinSystemErrorException: Failed to open .*
There is not any Sun JRE installed in the current system\.'
else
  echo "readme_host.sh: the run without Java is left out: this machine lets nobody hide a folder (unshare, mount)"
fi

finish
