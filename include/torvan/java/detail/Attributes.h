// What compilers are told about the declarations of torvan::java.
#pragma once

// Exceptions are caught by their type across the borders of a host's libraries, even if those hide their symbols. What
// belongs to one copy of the layer is hidden, even in a library that shows its symbols.
#ifdef _WIN32
#define TORVAN_JAVA_VISIBLE
#define TORVAN_JAVA_HIDDEN
#else
#define TORVAN_JAVA_VISIBLE __attribute__((visibility("default")))
#define TORVAN_JAVA_HIDDEN __attribute__((visibility("hidden")))
#endif

// A result that must not outlive the parameter, or the object, that has this attribute: the compiler warns if it does.
#ifdef __has_cpp_attribute
#if __has_cpp_attribute(clang::lifetimebound)
#define TORVAN_JAVA_LENT [[clang::lifetimebound]]
#endif
#endif
#ifndef TORVAN_JAVA_LENT
#define TORVAN_JAVA_LENT
#endif
