// Marks what the library exports.
#pragma once

#include <rx/Compiler.h>

#if defined(_WIN32)
#if defined(TORVAN_BUILD)
#define TORVAN_API __declspec(dllexport)
#else
#define TORVAN_API __declspec(dllimport)
#endif
#else
#define TORVAN_API __attribute__((visibility("default")))
#endif
