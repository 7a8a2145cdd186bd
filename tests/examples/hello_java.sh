#!/usr/bin/env bash
# Runs the README's first example and compares what it prints: hello_java.sh PROGRAM [RUNNERS]
# shellcheck source=tests/examples/expect.sh
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh" "$@"

expect 'Java' 0 'HELLO FROM JAVA 4'
if hide_java; then
  # The library prints the cause, the failure that the host catches comes after it.
  expect 'no Java' 1 'mirel::base::win::CWinSystemErrorException: Failed to open .*
mirel::jni::CJavaRuntimeException: There is not any Sun JRE installed in the current system\. at jni/.*:206'
else
  echo "hello_java.sh: the run without Java is left out: this machine does not let a user hide a folder (unshare, mount)"
fi

finish
