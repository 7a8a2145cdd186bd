// The choice among the Java runtimes of a machine.
#pragma once

#include <torvan/java/Runtimes.h>

#include "java/runtimes/Machine.h"

namespace torvan::java::detail {

// ChooseRuntime on any machine.
Runtime Choose(const Machine& machine, const VersionRange& versions);

}  // namespace torvan::java::detail
