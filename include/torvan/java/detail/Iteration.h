// What Java's iterators return, as C++ values.
#pragma once

#include <torvan/java/Method.h>
#include <torvan/java/detail/InPlace.h>

#include <optional>
#include <utility>

namespace torvan::java::detail {

struct JavaIterator {
  static constexpr char JavaName[] = "java/util/Iterator";
};
struct JavaEntry {
  static constexpr char JavaName[] = "java/util/Map$Entry";
};

// The iterator of an Iterable, of a map's entries, or the one that is given. Throws Misuse for any other object.
Local<JavaIterator> IteratorOf(const Ref<Object>& source, bool ofEntries);
bool HasNext(const Local<JavaIterator>& iterator);

// A value that Java declares as an Object. Numbers come in objects.
template <typename T>
struct ObjectValue {
  using Value = ElementValue<T>;
  static constexpr bool isNumber = Row<Value>::Letter != 'L';
  using Taken = std::conditional_t<isNumber, std::optional<Value>, Value>;
  static constexpr bool isGood = Row<Value>::Letter != 0 && Row<Value>::IsResult;

  // Calls a method without arguments that returns it.
  template <typename Owner>
  static Value Of(const Method<Owner, Taken()>& method, const Ref<Owner>& object, const char* name) {
    Taken taken = method(object);
    if constexpr (isNumber) {
      if (!taken) ThrowNullResult({MemberKind::Method, Owner::JavaName, name, "()Ljava/lang/Object;", nullptr});
      return *std::move(taken);
    } else {
      return taken;
    }
  }
};

// The functions whose members are kept, with the classes of their results, are hidden as ClassOf is.
template <typename T>
struct Item {
  using Value = typename ObjectValue<T>::Value;
  static constexpr bool isGood = ObjectValue<T>::isGood;
  static constexpr bool isEntry = false;

  TORVAN_JAVA_HIDDEN static Value Next(const Ref<JavaIterator>& iterator) {
    static constexpr Method<JavaIterator, typename ObjectValue<T>::Taken()> next{"next", "()Ljava/lang/Object;"};
    return ObjectValue<T>::Of(next, iterator, "next");
  }
};
template <typename K, typename V>
struct Item<std::pair<K, V>> {
  using Value = std::pair<typename ObjectValue<K>::Value, typename ObjectValue<V>::Value>;
  static constexpr bool isGood = ObjectValue<K>::isGood && ObjectValue<V>::isGood;
  static constexpr bool isEntry = true;

  TORVAN_JAVA_HIDDEN static Value Next(const Ref<JavaIterator>& iterator) {
    static constexpr Method<JavaEntry, typename ObjectValue<K>::Taken()> getKey{"getKey", "()Ljava/lang/Object;"};
    static constexpr Method<JavaEntry, typename ObjectValue<V>::Taken()> getValue{"getValue", "()Ljava/lang/Object;"};
    const Local<JavaEntry> entry = Item<JavaEntry>::Next(iterator);
    auto key = ObjectValue<K>::Of(getKey, Ref<JavaEntry>(entry), "getKey");
    return Value(std::move(key), ObjectValue<V>::Of(getValue, Ref<JavaEntry>(entry), "getValue"));
  }
};

}  // namespace torvan::java::detail
