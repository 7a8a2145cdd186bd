// Everything of torvan::java: the VM, threads, references, members, errors, runtimes and processes for a new host.
#pragma once

#include <torvan/java/Failure.h>
#include <torvan/java/Process.h>
#include <torvan/java/Program.h>
#include <torvan/java/Runtime.h>
#include <torvan/java/Runtimes.h>
#include <torvan/java/Version.h>
#include <torvan/java/VersionRange.h>
