// Marks what the root library exports.
#pragma once

#include <rx/Compiler.h>

#if defined(_WIN32)
#if defined(RX_BUILD)
#define RX_API __declspec(dllexport)
#else
#define RX_API __declspec(dllimport)
#endif
#else
#define RX_API __attribute__((visibility("default")))
#endif
