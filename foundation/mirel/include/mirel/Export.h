// Marks what the foundation library exports.
#pragma once

#include <rx/Compiler.h>

#if defined(_WIN32)
#if defined(MIREL_BUILD)
#define MIREL_API __declspec(dllexport)
#else
#define MIREL_API __declspec(dllimport)
#endif
#else
#define MIREL_API __attribute__((visibility("default")))
#endif
