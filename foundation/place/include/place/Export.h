// Marks what the file-location library exports.
#pragma once

#include <rx/Compiler.h>

#if defined(_WIN32)
#if defined(PLACE_BUILD)
#define PLACE_API __declspec(dllexport)
#else
#define PLACE_API __declspec(dllimport)
#endif
#else
#define PLACE_API __attribute__((visibility("default")))
#endif
