// The Java Native Interface's own types, as the JDK publishes them.
#pragma once

#if !__has_include(<jni.h>)
#error "jni.h was not found, which is in a JDK: CMake takes JAVA_HOME, pkg-config --define-variable=jdk=FOLDER."
#endif
#include <jni.h>

static_assert(sizeof(jboolean) == 1 && sizeof(jbyte) == 1, "Java's 8-bit types");
static_assert(sizeof(jchar) == 2 && sizeof(jshort) == 2, "Java's 16-bit types");
static_assert(sizeof(jint) == 4 && sizeof(jfloat) == 4, "Java's 32-bit types");
static_assert(sizeof(jlong) == 8 && sizeof(jdouble) == 8, "Java's 64-bit types");
