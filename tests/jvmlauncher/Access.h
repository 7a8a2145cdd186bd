// Access to the launcher's private members.
#pragma once

#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/JavaVmOptions.h>

#include <string>
#include <vector>

#include "ThisSystem.h"

namespace tests {

// The source that starts programs, as its exceptions name it.
constexpr const char* LaunchTag = "jvmlauncher/JavaVmLauncherImplWin";

// The text of each on a command line; null is "(null)".
std::string LineOf(const torvan::jvmlauncher::CJavaVmOption& option);
std::string LineOf(const torvan::jvmlauncher::CJavaVmOptions& options);
std::string LineOf(const torvan::jvmlauncher::CArgumentList& arguments);

// Append each as separate arguments, and return the count that it reports.
unsigned int AppendTo(torvan::jvmlauncher::CArgumentList& list, const torvan::jvmlauncher::CJavaVmOption& option);
unsigned int AppendTo(torvan::jvmlauncher::CArgumentList& list, const torvan::jvmlauncher::CJavaVmOptions& options);

std::vector<std::string> ArgumentsOf(const torvan::jvmlauncher::CArgumentList& list);

}  // namespace tests
