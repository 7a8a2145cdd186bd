// Everything of torvan::java: the VM, threads, references, members, errors, runtimes and processes for a new host.
#pragma once

#include <rx/Compiler.h>

#include <torvan/JavaCalls.h>
#include <torvan/java/ClassLoader.h>
#include <torvan/java/Process.h>
#include <torvan/java/Program.h>
#include <torvan/java/Runtime.h>
#include <torvan/java/Runtimes.h>
#include <torvan/java/Version.h>
#include <torvan/java/VersionRange.h>
#include <torvan/java/Vm.h>
#include <torvan/java/VmSettings.h>
#include <torvan/java/detail/ProgramSettings.h>
