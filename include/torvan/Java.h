// Everything of torvan::java: the VM, threads, references, members and errors for a new host.
#pragma once

#include <torvan/java/Failure.h>
#include <torvan/java/Process.h>
#include <torvan/java/Program.h>
