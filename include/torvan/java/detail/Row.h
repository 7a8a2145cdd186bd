// The rows of the conversion table: what each C++ type is in Java, and how it gets there and back.
#pragma once

#include <torvan/java/Convert.h>
#include <torvan/java/Global.h>
#include <torvan/java/Local.h>
#include <torvan/java/detail/Boxes.h>
#include <torvan/java/detail/Descriptor.h>
#include <torvan/java/detail/Jni.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Passed.h>
#include <torvan/java/detail/StringText.h>

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace torvan::java::detail {

// A row has
//   Letter    as in descriptors: of a number, 'L' for any reference, 'V', or 0 where Java has no such type
//   Tag       of a reference, void of a number
//   IsResult  whether Java can return one; HasNull whether it may be null
// and for a number Value(T) and Take(number), for a reference Pass(env, T), whose result has Get() and lives as long as
// the call, and Take(env, local), which owns the local reference; that is null only where HasNull.
template <typename T, typename = void>
struct Row {
  static constexpr char Letter = 0;
  using Tag = void;
  static constexpr bool IsResult = false;
};

template <>
struct Row<void> {
  static constexpr char Letter = 'V';
  using Tag = void;
  static constexpr bool IsResult = true;
};

// Which C++ numbers there are, NumberLetter says.
template <typename T>
struct Row<T, std::enable_if_t<NumberLetter<T>() != 0>> {
  static constexpr char Letter = NumberLetter<T>();
  using Tag = void;
  static constexpr bool IsResult = true;
  static auto Value(T number) noexcept {
    if constexpr (std::is_same_v<T, std::byte>) {
      return static_cast<jbyte>(number);  // a number is what Java makes of the bits
    } else {
      return number;
    }
  }
  static T Take(typename Jni<Letter>::Type number) noexcept {
    if constexpr (Letter == 'Z') {
      return number != JNI_FALSE;
    } else {
      return static_cast<T>(number);
    }
  }
};

// A number as JNI has it; its boolean is 0 or 1 and nothing else.
template <char Letter, typename T>
typename Jni<Letter>::Type JniNumber(T number) noexcept {
  if constexpr (Letter == 'Z') {
    return number ? JNI_TRUE : JNI_FALSE;
  } else {
    return static_cast<typename Jni<Letter>::Type>(number);
  }
}

template <typename T, bool MayReturn>
struct TextRow {
  static constexpr char Letter = 'L';
  using Tag = String;
  static constexpr bool IsResult = MayReturn;
  static constexpr bool HasNull = false;
  static Passed Pass(JNIEnv* env, const T& text) { return Passed(env, NewText(env, text)); }
  static T Take(JNIEnv* env, jobject local) {
    const LocalScope string(env, local);
    if constexpr (std::is_same_v<T, std::string>) {
      return ReadUtf8(env, static_cast<jstring>(local));
    } else {
      return ReadUtf16(env, static_cast<jstring>(local));
    }
  }
};
// As a result it would be a view of a Java string that is gone.
// clang-format off
template <> struct Row<std::string>         : TextRow<std::string, true> {};
template <> struct Row<std::u16string>      : TextRow<std::u16string, true> {};
template <> struct Row<std::string_view>    : TextRow<std::string_view, false> {};
template <> struct Row<std::u16string_view> : TextRow<std::u16string_view, false> {};
// clang-format on

// A literal or a C string; a null pointer is Java's null.
template <typename Unit>
struct Row<const Unit*, std::enable_if_t<std::is_same_v<Unit, char> || std::is_same_v<Unit, char16_t>>>
    : TextRow<std::basic_string_view<Unit>, false> {
  static Passed Pass(JNIEnv* env, const Unit* text) {
    return text != nullptr ? Passed(env, NewText(env, std::basic_string_view<Unit>(text))) : Passed();
  }
};

template <typename R, typename T, bool MayReturn>
struct RefRow {
  static constexpr char Letter = 'L';
  using Tag = T;
  static constexpr bool IsResult = MayReturn;
  static constexpr bool HasNull = true;
  static Passed Pass(JNIEnv*, const R& ref) noexcept { return Passed(ref.Get()); }
};
template <typename T>
struct Row<Local<T>> : RefRow<Local<T>, T, true> {
  static Local<T> Take(JNIEnv* env, jobject local) noexcept { return Own<T>(env, local); }
};
template <typename T>
struct Row<Global<T>> : RefRow<Global<T>, T, true> {
  static Global<T> Take(JNIEnv* env, jobject local) {
    const LocalScope scope(env, local);
    return GlobalOf<T>(env, local);
  }
};
template <typename T>
struct Row<Ref<T>> : RefRow<Ref<T>, T, false> {};

// A number that may be null is an object of Java's class for it.
template <typename E, bool IsNumber>
struct OptionalRow {
  using Tag = Boxed<Row<E>::Letter>;
  static Passed Pass(JNIEnv* env, const std::optional<E>& number) {
    if (!number) return Passed();
    jvalue value{};
    Jni<Row<E>::Letter>::In(value) = JniNumber<Row<E>::Letter>(Row<E>::Value(*number));
    return Passed(env, Box(env, Row<E>::Letter, value));
  }
  static std::optional<E> Take(JNIEnv* env, jobject local) {
    if (local == nullptr) return std::nullopt;
    const LocalScope boxed(env, local);
    RequireInstance(env, local, ClassOf<Tag>(env));
    jvalue value = Unbox(env, Row<E>::Letter, local);
    return Row<E>::Take(Jni<Row<E>::Letter>::In(value));
  }
};
template <typename E>
struct OptionalRow<E, false> {
  using Tag = typename Row<E>::Tag;
  static auto Pass(JNIEnv* env, const std::optional<E>& value) {
    struct Holder {
      std::optional<decltype(Row<E>::Pass(env, *value))> passed;
      jobject Get() const noexcept { return passed ? passed->Get() : nullptr; }
    } holder;
    if (value) holder.passed.emplace(Row<E>::Pass(env, *value));
    return holder;
  }
  static std::optional<E> Take(JNIEnv* env, jobject local) {
    if (local == nullptr) return std::nullopt;
    return Row<E>::Take(env, local);
  }
};
template <typename E>
struct Row<std::optional<E>, std::enable_if_t<Row<E>::Letter != 0>> : OptionalRow<E, Row<E>::Letter != 'L'> {
  static constexpr char Letter = 'L';
  static constexpr bool IsResult = Row<E>::IsResult;
  static constexpr bool HasNull = true;
};

// A type of the host's own: what its Convert makes of it is kept as long as the call.
template <typename T>
struct ViaPassed {
  using Via = typename Convert<T>::Through;
  using Made = decltype(Convert<T>::To(std::declval<const T&>()));

  ViaPassed(JNIEnv* env, const T& value) : made(Convert<T>::To(value)), passed(Row<Via>::Pass(env, made)) {}
  jobject Get() const noexcept { return passed.Get(); }

  Made made;
  decltype(Row<Via>::Pass(nullptr, std::declval<const Made&>())) passed;
};
template <typename T>
constexpr bool IsOptional = false;
template <typename E>
constexpr bool IsOptional<std::optional<E>> = true;
template <typename T>
struct Row<T, std::void_t<typename Convert<T>::Through>> {
  using Via = typename Convert<T>::Through;
  static constexpr char Letter = Row<Via>::Letter;
  using Tag = typename Row<Via>::Tag;
  static constexpr bool IsResult = Row<Via>::IsResult;
  static constexpr bool HasNull = IsOptional<Via>;
  static auto Value(const T& value) { return Row<Via>::Value(static_cast<Via>(Convert<T>::To(value))); }
  static ViaPassed<T> Pass(JNIEnv* env, const T& value) { return ViaPassed<T>(env, value); }
  template <typename... Taken>
  static T Take(Taken... taken) {
    return Convert<T>::From(Row<Via>::Take(taken...));
  }
};
template <typename T, typename = void>
constexpr bool IsOwnType = false;
template <typename T>
constexpr bool IsOwnType<T, std::void_t<typename Convert<T>::Through>> = true;

// The descriptor of the Java type. Made when a call is compiled: a tag may be incomplete where the member is declared.
template <typename T>
constexpr auto TypeDescriptor() {
  if constexpr (Row<T>::Letter == 'L') {
    return ClassDescriptor<typename Row<T>::Tag>();
  } else {
    FixedText<1> text;
    text.data[0] = Row<T>::Letter;
    return text;
  }
}

}  // namespace torvan::java::detail
