// The Java runtimes on this machine, as Java's installers register them on Windows.
#pragma once

#include "platform/linux/Registry.h"

namespace torvan::platform {

// Adds what a Windows installation would register for each Java runtime found:
//   Software\JavaSoft\Java Runtime Environment            CurrentVersion
//   Software\JavaSoft\Java Runtime Environment\<version>  JavaHome, RuntimeLib
//   Software\JavaSoft\Java Development Kit                CurrentVersion        for runtimes that have a compiler
//   Software\JavaSoft\Java Development Kit\<version>      JavaHome
//
// It searches `javaHome` (null or empty for none), then the folders in `folder` in the order of their names. A
// runtime is a folder with a VM library and a `release` file with its version: at most 255 units, and no
// backslash. Of runtimes of the same version the first is listed, so several links to one folder count once. The
// current version is that of `javaHome`, or else the newest. A `javaHome` that is no runtime is skipped, and
// the reason is printed to CSystem::debugOut. Throws CMemoryException.
void AddJavaRuntimes(const char* javaHome, const char* folder, Registry& registry);

// Compares the numbers in two version texts in turn; the result is below, equal to or above 0. Text between the
// numbers does not count. If all numbers of one are equal to the other's, the one with fewer numbers is smaller.
int CompareNumbersInTurn(const RX::UniChar* left, const RX::UniChar* right);

}  // namespace torvan::platform
