// Texts of Windows for a VM of Unix: paths and the environment.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace hotspot {

// A start option with the paths in it made ones of Unix.
std::string WithUnixPaths(const char* option);

// Lets Java see the path lists that the host has passed, and the separator that they have.
void ShowHostPaths(JNIEnv* env, const std::vector<JavaVMOption>& hostOptions);

// Copies the Windows process's environment variables into the Unix process, except those of paths and folders.
void TakeOverEnvironment();

}  // namespace hotspot
