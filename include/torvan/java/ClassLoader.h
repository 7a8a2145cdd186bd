// Classes by name, and the loaders that find them.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/Local.h>
#include <torvan/java/Weak.h>

#include <filesystem>
#include <string>
#include <vector>

namespace torvan::java {

// Finds and initialises a class by its name: "java/lang/String", "java.lang.String", "[I", "[Ljava/lang/String;".
// It is looked for by the loader that the layer keeps from the start of the VM, in callbacks, too. Throws Error, whose
// text has the class path when there is no such class, and as Thread() does.
Local<Class> FindClass(const char* name);

// A Java class loader. Copies share it, may be used and dropped on any thread, and keep it and its classes alive.
// A class is its name and its loader: two loaders that do not share a parent that finds it have two classes of one
// name, and an object of one is none of the other. References of the host, members that are bound to its classes, and
// whatever Java keeps hold a loader; when the last is gone, Java collects it with all of its classes.
class ClassLoader {
 public:
  // Makes a loader of archives and folders, which asks its parent first: the loader that the layer keeps, or the one
  // that is given. Platform() as the parent hides the host's class path from the classes. Paths mean the host's current
  // folder. Throws Misuse that names one that is not there, Error, and as Thread() does.
  static ClassLoader OfJars(const std::vector<std::filesystem::path>& jars);
  static ClassLoader OfJars(const std::vector<std::filesystem::path>& jars, const ClassLoader& parent);

  // The loader of the class path. Throws as Thread() does.
  static ClassLoader System();

  // The one that finds what comes with Java and nothing else; most often the parent of that. Throws as Thread() does.
  static ClassLoader Platform();

  // The loader of the object's class, or of the class itself when the object is one. Throws Misuse when the object is
  // null or its class the VM's own, which no loader finds.
  static ClassLoader Of(const Ref<Object>& object);

  // As java::FindClass, through this loader. Members are bound to the class that it finds:
  //   const auto greet = Greet.In(loader.FindClass("plugin/Greeter"));
  Local<Class> FindClass(const char* name) const;

  // Closes the archives: what was loaded stays, what was not is not found any more. A second time does nothing. Throws
  // Misuse when the loader is none that can be closed, as System() is not, Error, and as Thread() does.
  void Close() const;

  // A reference that sees when Java has collected the loader, and so its classes. Throws as Weak does.
  Weak<Object> WeakReference() const { return Weak<Object>(m_loader); }

  // The java.lang.ClassLoader.
  const Global<Object>& Loader() const noexcept { return m_loader; }

 private:
  explicit ClassLoader(const Ref<Object>& loader) : m_loader(loader) {}

  Global<Object> m_loader;
};

// Makes a loader the calling thread's context class loader, and the one before again at the end of its scope. Java's
// service look-ups and many libraries find classes by it. Scopes of a thread end in the reverse order of their making.
// Throws Error, and as Thread() does.
class ContextClassLoader {
 public:
  explicit ContextClassLoader(const ClassLoader& loader);
  ContextClassLoader(const ContextClassLoader&) = delete;
  ContextClassLoader& operator=(const ContextClassLoader&) = delete;
  ~ContextClassLoader();

 private:
  JNIEnv* m_env;
  Local<Object> m_thread;
  Local<Object> m_before;
};

}  // namespace torvan::java
