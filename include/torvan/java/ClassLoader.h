// Classes by name, and the loaders that find them.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/Local.h>

#include <filesystem>
#include <string>
#include <vector>

namespace torvan::java {

// Finds and initialises a class by its name: "java/lang/String", "java.lang.String", "[I", "[Ljava/lang/String;".
// It is looked for by the loader that the layer keeps from the start of the VM, in callbacks, too. Throws Error, whose
// text has the class path when there is no such class, and as Thread() does.
Local<Class> FindClass(const char* name);

// A Java class loader. Copies share it, may be used and dropped on any thread, and keep it and its classes alive.
class ClassLoader {
 public:
  // Makes a loader of archives and folders, which asks the one that the layer keeps first. Paths mean the host's
  // current folder. Throws Misuse that names one that is not there, Error, and as Thread() does.
  static ClassLoader OfJars(const std::vector<std::filesystem::path>& jars);

  // The loader of the class path. Throws as Thread() does.
  static ClassLoader System();

  // The loader of the object's class, or of the class itself when the object is one. Throws Misuse when the object is
  // null or its class the VM's own, which no loader finds.
  static ClassLoader Of(const Ref<Object>& object);

  // As java::FindClass, through this loader. Members are bound to the class that it finds:
  //   const auto greet = Greet.In(loader.FindClass("plugin/Greeter"));
  Local<Class> FindClass(const char* name) const;

  // The java.lang.ClassLoader.
  const Global<Object>& Loader() const noexcept { return m_loader; }

 private:
  explicit ClassLoader(const Ref<Object>& loader) : m_loader(loader) {}

  Global<Object> m_loader;
};

}  // namespace torvan::java
