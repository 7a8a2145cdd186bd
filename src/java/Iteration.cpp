#include <torvan/java/detail/Iteration.h>

#include <torvan/java/Cast.h>

#include <string>

#include "java/ClassNames.h"

namespace torvan::java::detail {

namespace {

struct Iterable {
  static constexpr char JavaName[] = "java/lang/Iterable";
};
struct Map {
  static constexpr char JavaName[] = "java/util/Map";
};
struct Set {
  static constexpr char JavaName[] = "java/util/Set";
  using Super = Iterable;
};

constexpr Method<Iterable, Local<JavaIterator>()> GetIterator{"iterator"};
constexpr Method<JavaIterator, bool()> AskHasNext{"hasNext"};
constexpr Method<Map, Local<Set>()> EntrySet{"entrySet"};

}  // namespace

Local<JavaIterator> IteratorOf(const Ref<Object>& source, bool ofEntries) {
  if (!source) throw Misuse("java/Iteration", __LINE__, "null is given where a Java collection is needed");
  if (IsInstance<Iterable>(source)) return GetIterator(source.Get());
  if (IsInstance<JavaIterator>(source)) return Cast<JavaIterator>(source);
  const bool isMap = IsInstance<Map>(source);
  if (isMap && ofEntries) return GetIterator(EntrySet(source.Get()));
  JNIEnv* const env = Env();
  const LocalScope type(env, env->GetObjectClass(source.Get()));
  const std::string name = NameOf(env, static_cast<jclass>(type.Get()));
  if (isMap) {
    throw Misuse("java/Iteration", __LINE__, "a " + name + " is given, whose entries are std::pair: ask for these");
  }
  throw Misuse("java/Iteration", __LINE__, "a " + name + " is given where an Iterable, an Iterator or a Map is needed");
}

bool HasNext(const Local<JavaIterator>& iterator) { return AskHasNext(iterator); }

}  // namespace torvan::java::detail
