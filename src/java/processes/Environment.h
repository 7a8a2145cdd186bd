// The environment of a program.
#pragma once

#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

// The host's own environment with the program's changes and what Java needs for UTF-8, as "NAME=value".
std::vector<NativeText> EnvironmentOf(const ProgramSettings& settings);

// Sets or removes one variable.
void Change(std::vector<NativeText>& environment, const EnvironmentChange& change);

}  // namespace torvan::java::detail
