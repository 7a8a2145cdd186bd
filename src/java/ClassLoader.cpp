#include <torvan/java/ClassLoader.h>

#include <torvan/java/Cast.h>
#include <torvan/java/Constructor.h>
#include <torvan/java/Error.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Method.h>
#include <torvan/java/StaticMethod.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/LocalScope.h>

#include "java/Bindings.h"
#include "java/ClassNames.h"
#include "java/PathText.h"
#include "java/PendingAside.h"
#include "java/Reflection.h"

namespace torvan::java {

namespace {

struct File {
  static constexpr char JavaName[] = "java/io/File";
};
struct Uri {
  static constexpr char JavaName[] = "java/net/URI";
};
struct Url {
  static constexpr char JavaName[] = "java/net/URL";
};
struct Loader {
  static constexpr char JavaName[] = "java/lang/ClassLoader";
};
struct Closeable {
  static constexpr char JavaName[] = "java/io/Closeable";
};
struct UrlLoader {
  static constexpr char JavaName[] = "java/net/URLClassLoader";
  using Super = Loader;
};

constexpr Constructor<File(std::string_view)> NewFile;
constexpr Method<File, bool()> Exists{"exists"};
constexpr StaticMethod<std::optional<std::string>(std::string_view)> GetProperty{"java/lang/System", "getProperty"};
constexpr Method<File, Local<Uri>()> ToUri{"toURI"};
constexpr Method<Uri, Local<Url>()> ToUrl{"toURL"};
constexpr Constructor<UrlLoader(std::vector<Local<Url>>, Ref<Loader>)> NewUrlLoader;
constexpr StaticMethod<Local<Loader>()> GetSystem{"java/lang/ClassLoader", "getSystemClassLoader"};
constexpr StaticMethod<Local<Loader>()> GetPlatform{"java/lang/ClassLoader", "getPlatformClassLoader"};
constexpr Method<Loader, Local<Loader>()> GetParent{"getParent"};
constexpr Method<Closeable, void()> CloseIt{"close"};

// Whether classes of the class path or of Java itself are found by it. Before Java 9 such a loader is a URLClassLoader.
bool IsOfTheSystem(const Ref<Object>& loader) {
  for (auto own = GetSystem(); own; own = GetParent(own)) {
    if (Same(own, loader)) return true;
  }
  return false;
}

}  // namespace

Local<Class> FindClass(const char* name) {
  JNIEnv* const env = detail::CallEnv();
  return detail::Own<Class>(env, detail::LoadClass(env, name));
}

ClassLoader ClassLoader::OfJars(const std::vector<std::filesystem::path>& jars) {
  const Local<Object> kept(detail::KeptLoader());
  return OfJars(jars, ClassLoader(kept));
}

ClassLoader ClassLoader::OfJars(const std::vector<std::filesystem::path>& jars, const ClassLoader& parent) {
  const Thread thread;
  detail::CheckPending(thread.Env());
  std::vector<Local<Url>> urls;
  for (const std::filesystem::path& jar : jars) {
    std::error_code error;
    const std::string path = detail::ToText(std::filesystem::absolute(jar, error));
    if (error || !std::filesystem::exists(jar, error)) {
      throw Misuse("java/ClassLoader", __LINE__, "there is no " + detail::ToText(jar) + " to load classes from");
    }
    const Local<File> file = NewFile(thread, path);
    if (!Exists(thread, file)) {  // no class would be found in it, and nothing would say why
      const std::string encoding = GetProperty(thread, "sun.jnu.encoding").value_or("another encoding");
      std::string text = "Java does not find " + path + ", which is there: it takes the names of files in ";
      text.append(encoding).append(", the encoding of this process's locale");
      throw Misuse("java/ClassLoader", __LINE__, text);
    }
    urls.push_back(ToUrl(thread, ToUri(thread, file)));
  }
  return ClassLoader(NewUrlLoader(thread, urls, parent.m_loader.Get()));
}

ClassLoader ClassLoader::System() { return ClassLoader(GetSystem()); }

ClassLoader ClassLoader::Platform() {
  detail::CallEnv();  // throws what is pending, which may be such an error, too
  try {
    return ClassLoader(GetPlatform());
  } catch (const Error& error) {
    if (error.ClassName() != "java.lang.NoSuchMethodError") throw;
  }
  // Java 8 names no platform loader: the last parent of the system's loader is it. The system's loader may be one of
  // the host's, with others in between.
  auto last = GetSystem();
  while (auto parent = GetParent(last)) last = std::move(parent);
  return ClassLoader(last);
}

ClassLoader ClassLoader::Of(const Ref<Object>& object) {
  if (!object) throw Misuse("java/ClassLoader", __LINE__, "null has no class loader");
  JNIEnv* const env = detail::CallEnv();
  const bool isClass = env->IsInstanceOf(object.Get(), detail::ClassOf<Class>(env)) != JNI_FALSE;
  const detail::LocalScope type(env, isClass ? nullptr : env->GetObjectClass(object.Get()));
  const auto own = static_cast<jclass>(isClass ? object.Get() : type.Get());
  const Local<Object> loader = detail::LoaderOf(own);
  if (!loader) throw Misuse("java/ClassLoader", __LINE__, "the class is the VM's own, which no class loader has");
  return ClassLoader(loader);
}

Local<Class> ClassLoader::FindClass(const char* name) const {
  JNIEnv* const env = detail::CallEnv();
  Local<Class> found = detail::Own<Class>(env, detail::LoadClass(env, m_loader.Get(), name));
  if (detail::IsOtherLoader(detail::LoaderOf(found))) detail::otherLoaders.store(true, std::memory_order_relaxed);
  return found;
}

void ClassLoader::Close() const {
  if (IsInstance<Closeable>(m_loader) && !IsOfTheSystem(m_loader)) return CloseIt(m_loader.Get());
  JNIEnv* const env = detail::Env();
  const detail::LocalScope type(env, env->GetObjectClass(m_loader.Get()));
  const std::string name = detail::NameOf(env, static_cast<jclass>(type.Get()));
  throw Misuse("java/ClassLoader", __LINE__, "a " + name + " is no class loader that can be closed");
}

ContextClassLoader::ContextClassLoader(const ClassLoader& loader) : m_attachment(detail::CallEnv()) {
  JNIEnv* const env = m_attachment.Env();
  const detail::Bindings& bound = *detail::Bound();
  const auto made = [env](jobject local) {
    Local<Object> own = detail::Own<Object>(env, local);
    detail::CheckPending(env);
    return own;
  };
  m_thread = made(env->CallStaticObjectMethodA(bound.threadClass, bound.currentThread, nullptr));
  m_before = made(env->CallObjectMethodA(m_thread.Get(), bound.getContextClassLoader, nullptr));
  jvalue wanted{};
  wanted.l = loader.Loader().Get();
  env->CallVoidMethodA(m_thread.Get(), bound.setContextClassLoader, &wanted);
  detail::CheckPending(env);
}

ContextClassLoader::~ContextClassLoader() {
  if (!m_attachment.IsHere()) return;
  JNIEnv* const env = m_attachment.Env();
  const detail::PendingAside pending(env);  // of raw JNI or the fixed interface
  jvalue before{};
  before.l = m_before.Get();
  env->CallVoidMethodA(m_thread.Get(), detail::Bound()->setContextClassLoader, &before);
  env->ExceptionClear();
}

}  // namespace torvan::java
