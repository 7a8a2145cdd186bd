// The loaders of classes.
#pragma once

#include <torvan/java/FindClass.h>
#include <torvan/java/Global.h>
#include <torvan/java/Local.h>
#include <torvan/java/Weak.h>

#include <filesystem>
#include <string>
#include <vector>

namespace torvan::java {

// A Java class loader. Copies share it, may be used and dropped on any thread, and keep it and its classes alive.
// A class is identified by its name and its loader: two loaders without a common parent that finds it have two classes
// of one name, and an object of one is not one of the other. A loader is kept alive by references of the host, members
// that are bound to its classes, and whatever Java keeps; when the last is gone, Java collects it with all of its
// classes.
class ClassLoader {
 public:
  // Makes a loader of archives and folders, which asks its parent first: the loader that the layer keeps, or the one
  // that is given. Platform() as the parent hides the host's class path from the classes. Relative paths are relative
  // to the host's current folder. Throws Misuse that names one that does not exist, or that Java does not find because
  // the locale's encoding (see VmSettings) lacks a character of its name; Error, and as a call does.
  static ClassLoader OfJars(const std::vector<std::filesystem::path>& jars);
  static ClassLoader OfJars(const std::vector<std::filesystem::path>& jars, const ClassLoader& parent);

  // The loader of the class path. Throws as a call does.
  static ClassLoader System();

  // The one that finds what comes with Java and nothing else; most often the parent of that. Throws as a call does.
  static ClassLoader Platform();

  // The loader of the object's class, or of the class itself when the object is one. Throws Misuse when the object is
  // null or its class is the VM's own, which has no loader, and as a call does.
  static ClassLoader Of(const Ref<Object>& object);

  // As java::FindClass, through this loader. Members are bound to the class that it finds:
  //   const auto greet = Greet.In(loader.FindClass("plugin/Greeter"));
  Local<Class> FindClass(const char* name) const;

  // Closes the archives: what was loaded stays, and nothing else is found any more. Closing it again does nothing.
  // Throws Misuse when the loader cannot be closed, like System() and its parents, Error, and as a call does.
  void Close() const;

  // A reference that sees when Java has collected the loader, and so its classes. Throws as Weak does.
  Weak<Object> WeakReference() const { return Weak<Object>(m_loader); }

  // Moving copies: an object of this class always refers to a class loader.
  ClassLoader(const ClassLoader&) = default;
  ClassLoader& operator=(const ClassLoader&) = default;

  // The java.lang.ClassLoader.
  const Global<Object>& Loader() const noexcept { return m_loader; }

 private:
  explicit ClassLoader(const Ref<Object>& loader) : m_loader(loader) {}

  Global<Object> m_loader;
};

// Sets the calling thread's context class loader, and restores the one before at the end of its scope. Java's service
// look-ups and many libraries find classes by it. The scopes of a thread must end in the reverse order. Throws Error,
// and as a call does.
class [[nodiscard]] ContextClassLoader {
 public:
  explicit ContextClassLoader(const ClassLoader& loader);
  ContextClassLoader(const ContextClassLoader&) = delete;
  ContextClassLoader& operator=(const ContextClassLoader&) = delete;
  ~ContextClassLoader();

 private:
  detail::Attachment m_attachment;
  Local<Object> m_thread;
  Local<Object> m_before;
};

}  // namespace torvan::java
