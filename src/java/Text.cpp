#include <torvan/java/Text.h>

#include <torvan/java/detail/StringText.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Pending.h>

#include <cstring>
#include <limits>
#include <new>

namespace torvan::java::detail {

namespace {

// What is converted on the stack: most texts whole, long ones piece by piece.
constexpr std::size_t AtOnce = 1024;

jsize CheckedLength(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<jsize>::max())) {
    throw Misuse("java/Text", __LINE__,
                 "a text of " + std::to_string(size) + " units is longer than a Java string can be");
  }
  return static_cast<jsize>(size);
}

jstring Made(JNIEnv* env, jstring string) {
  if (string == nullptr) {
    CheckPending(env);
    throw std::bad_alloc();
  }
  return string;
}

jstring FromUnits(JNIEnv* env, const char16_t* units, std::size_t size) {
  return Made(env, env->NewString(reinterpret_cast<const jchar*>(units), CheckedLength(size)));
}

}  // namespace

jstring NewText(JNIEnv* env, std::u16string_view units) { return FromUnits(env, units.data(), units.size()); }

jstring NewText(JNIEnv* env, std::string_view text) {
  CheckedLength(text.size());
  // The VM makes its compact strings of ASCII bytes twice as fast as of units, but needs a zero after them.
  if (IsPlainAscii(text)) {
    if (text.size() > 2 * AtOnce) return Made(env, env->NewStringUTF(std::string(text).c_str()));
    char terminated[2 * AtOnce + 1];
    text.copy(terminated, text.size());
    terminated[text.size()] = '\0';
    return Made(env, env->NewStringUTF(terminated));
  }
  if (text.size() > AtOnce) return NewText(env, ToUtf16(text));
  char16_t units[AtOnce];
  return FromUnits(env, units, static_cast<std::size_t>(WriteUtf16(text, units) - units));
}

std::u16string ReadUtf16(JNIEnv* env, jstring string) {
  const jsize length = env->GetStringLength(string);
  const auto size = static_cast<std::size_t>(length);
  std::u16string units;
#ifdef __cpp_lib_string_resize_and_overwrite
  units.resize_and_overwrite(size, [=](char16_t* to, std::size_t) {
    env->GetStringRegion(string, 0, length, reinterpret_cast<jchar*>(to));
    return size;
  });
#else
  units.resize(size);
  env->GetStringRegion(string, 0, length, reinterpret_cast<jchar*>(units.data()));
#endif
  return units;
}

std::string ReadUtf8(JNIEnv* env, jstring string) {
  const auto length = static_cast<std::size_t>(env->GetStringLength(string));
  char16_t units[AtOnce];
  char bytes[3 * AtOnce];
  const auto read = [&](std::size_t from) {
    std::size_t size = length - from < AtOnce ? length - from : AtOnce;
    env->GetStringRegion(string, static_cast<jsize>(from), static_cast<jsize>(size), reinterpret_cast<jchar*>(units));
    const bool cut = from + size < length && (units[size - 1] & 0xFC00) == 0xD800;
    return cut ? size - 1 : size;  // a pair stays together
  };
  if (length <= AtOnce) return std::string(bytes, WriteUtf8(units, read(0), bytes));
  std::string text;
  text.reserve(length);
  for (std::size_t from = 0; from < length;) {
    const std::size_t size = read(from);
    text.append(bytes, WriteUtf8(units, size, bytes));
    from += size;
  }
  return text;
}

}  // namespace torvan::java::detail

namespace torvan::java {

namespace {

jstring NotNull(const Ref<String>& string) {
  if (!string) throw Misuse("java/Text", __LINE__, "null is given for a Java string");
  return static_cast<jstring>(string.Get());
}

}  // namespace

std::string ToText(const Ref<String>& string) { return detail::ReadUtf8(detail::CallEnv(), NotNull(string)); }
std::u16string ToUnits(const Ref<String>& string) { return detail::ReadUtf16(detail::CallEnv(), NotNull(string)); }

}  // namespace torvan::java
