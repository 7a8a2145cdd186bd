#include <torvan/java/ClassLoader.h>

#include <torvan/java/Cast.h>
#include <torvan/java/Constructor.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Method.h>
#include <torvan/java/StaticMethod.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/LocalScope.h>

#include "java/PathText.h"
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
struct Urls {
  static constexpr char JavaName[] = "[Ljava/net/URL;";
};
struct Loader {
  static constexpr char JavaName[] = "java/lang/ClassLoader";
};
struct UrlLoader {
  static constexpr char JavaName[] = "java/net/URLClassLoader";
  using Super = Loader;
};

constexpr Constructor<File(std::string_view)> NewFile;
constexpr Method<File, Local<Uri>()> ToUri{"toURI"};
constexpr Method<Uri, Local<Url>()> ToUrl{"toURL"};
constexpr Constructor<UrlLoader(Ref<Urls>, Ref<Loader>)> NewUrlLoader;
constexpr StaticMethod<Local<Loader>()> GetSystem{"java/lang/ClassLoader", "getSystemClassLoader"};

}  // namespace

Local<Class> FindClass(const char* name) {
  JNIEnv* const env = detail::Env();
  return detail::Own<Class>(env, detail::LoadClass(env, name));
}

ClassLoader ClassLoader::OfJars(const std::vector<std::filesystem::path>& jars) {
  const Thread thread;
  JNIEnv* const env = thread.Env();
  const auto type = detail::ClassOf<Url>(env);
  const auto size = static_cast<jsize>(jars.size());
  const Local<Urls> urls = detail::Own<Urls>(env, env->NewObjectArray(size, type, nullptr));
  detail::CheckPending(env);
  for (jsize i = 0; i < size; ++i) {
    const std::filesystem::path& jar = jars[static_cast<std::size_t>(i)];
    std::error_code error;
    const std::string path = detail::ToText(std::filesystem::absolute(jar, error));
    if (error || !std::filesystem::exists(jar, error)) {
      throw Misuse("java/ClassLoader", __LINE__, "there is no " + detail::ToText(jar) + " to load classes from");
    }
    const Local<Url> url = ToUrl(thread, ToUri(thread, NewFile(thread, path)));
    env->SetObjectArrayElement(static_cast<jobjectArray>(urls.Get()), i, url.Get());
    detail::CheckPending(env);
  }
  return ClassLoader(NewUrlLoader(thread, urls, static_cast<jobject>(detail::KeptLoader())));
}

ClassLoader ClassLoader::System() { return ClassLoader(GetSystem()); }

ClassLoader ClassLoader::Of(const Ref<Object>& object) {
  if (!object) throw Misuse("java/ClassLoader", __LINE__, "null has no class loader");
  JNIEnv* const env = detail::Env();
  const bool isClass = env->IsInstanceOf(object.Get(), detail::ClassOf<Class>(env)) != JNI_FALSE;
  const detail::LocalScope type(env, isClass ? nullptr : env->GetObjectClass(object.Get()));
  const auto own = static_cast<jclass>(isClass ? object.Get() : type.Get());
  const Local<Object> loader = detail::LoaderOf(own);
  if (!loader) throw Misuse("java/ClassLoader", __LINE__, "the class is the VM's own, which no class loader has");
  return ClassLoader(loader);
}

Local<Class> ClassLoader::FindClass(const char* name) const {
  JNIEnv* const env = detail::Env();
  return detail::Own<Class>(env, detail::LoadClass(env, m_loader.Get(), name));
}

}  // namespace torvan::java
