// Reaches the launcher's members that hosts do not see.
#pragma once

#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/JavaVmOptions.h>

#include <string>
#include <vector>

#include "ThisSystem.h"

namespace tests {

// What each renders on a command line; a null text shows as "(null)".
std::string LineOf(const torvan::jvmlauncher::CJavaVmOption& option);
std::string LineOf(const torvan::jvmlauncher::CJavaVmOptions& options);
std::string LineOf(const torvan::jvmlauncher::CArgumentList& arguments);

// Append what each is as separate arguments, and return the count that they report.
unsigned int AppendTo(torvan::jvmlauncher::CArgumentList& list, const torvan::jvmlauncher::CJavaVmOption& option);
unsigned int AppendTo(torvan::jvmlauncher::CArgumentList& list, const torvan::jvmlauncher::CJavaVmOptions& options);

std::vector<std::string> ArgumentsOf(const torvan::jvmlauncher::CArgumentList& list);

}  // namespace tests
