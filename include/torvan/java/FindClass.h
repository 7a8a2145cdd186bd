// Classes by name.
#pragma once

#include <torvan/java/Local.h>

namespace torvan::java {

// Finds and initialises a class by its name: "java/lang/String", "java.lang.String", "[I", "[Ljava/lang/String;".
// It uses the loader that the layer keeps from the start of the VM, in callbacks, too. Throws Error, whose text has the
// class path when there is no such class, and as a call does: what is pending first.
Local<Class> FindClass(const char* name);

}  // namespace torvan::java
