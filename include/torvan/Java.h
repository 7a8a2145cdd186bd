// Everything of torvan::java: the VM, threads, references, members and errors for a new host.
#pragma once

#include <torvan/java/Cast.h>
#include <torvan/java/Error.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Global.h>
#include <torvan/java/Handle.h>
#include <torvan/java/Local.h>
#include <torvan/java/LocalFrame.h>
#include <torvan/java/Ref.h>
#include <torvan/java/Tags.h>
#include <torvan/java/Thread.h>
#include <torvan/java/Vm.h>
#include <torvan/java/VmSettings.h>
#include <torvan/java/Weak.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/Environment.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/Shared.h>
#include <torvan/java/detail/Text.h>
#include <torvan/java/detail/Utf.h>
