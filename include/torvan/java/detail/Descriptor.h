// JNI descriptors, made and checked by the compiler.
#pragma once

#include <torvan/java/Tags.h>

#include <cstddef>
#include <initializer_list>
#include <stdexcept>

namespace torvan::java::detail {

// A text that the compiler makes. It has a zero after it.
template <std::size_t Size>
struct FixedText {
  char data[Size + 1] = {};
  static constexpr std::size_t size = Size;
};

template <std::size_t N>
constexpr FixedText<N - 1> Fixed(const char (&literal)[N]) {
  FixedText<N - 1> text;
  for (std::size_t i = 0; i + 1 < N; ++i) text.data[i] = literal[i];
  return text;
}

template <typename... Part>
constexpr auto Join(const Part&... parts) {
  FixedText<(0 + ... + Part::size)> text;
  std::size_t at = 0;
  const auto put = [&](const auto& part) {
    for (std::size_t i = 0; i < part.size; ++i) text.data[at++] = part.data[i];
  };
  (put(parts), ...);
  return text;
}

// The descriptor of a tag's class. Names are taken with slashes and with dots; an array's name is its descriptor.
template <typename T>
constexpr auto ClassDescriptor() {
  if constexpr (!RequireTag<T>()) {
    return FixedText<0>();
  } else {
    auto name = Fixed(T::JavaName);
    for (std::size_t i = 0; i < name.size; ++i) {
      if (name.data[i] == '.') name.data[i] = '/';
    }
    if constexpr (T::JavaName[0] == '[') {
      return name;
    } else {
      return Join(Fixed("L"), name, Fixed(";"));
    }
  }
}

// The name of the class of arrays of E, a number or a tag.
template <typename E>
constexpr auto ArrayName() {
  if constexpr (NumberLetter<E>() != 0) {
    FixedText<2> text{{'[', NumberLetter<E>()}};
    return text;
  } else {
    return Join(Fixed("["), ClassDescriptor<E>());
  }
}
template <typename E>
inline constexpr auto ArrayNameOf = ArrayName<E>();

// Why a given descriptor does not fit the C++ types. In a constant expression, calling a function that is not constexpr
// is an error that shows its name; `throw "text"` would show its text only in a note. A member that is declared const
// and not constexpr throws the name when it is made.
#define TORVAN_JAVA_WRONG(name) \
  [[noreturn]] inline void name() { throw std::logic_error("torvan::java: " #name); }
namespace wrong {
TORVAN_JAVA_WRONG(a_type_in_the_descriptor_is_none_of_Z_B_C_S_I_J_F_D_an_array_and_a_class)
TORVAN_JAVA_WRONG(a_class_name_in_the_descriptor_has_no_semicolon_after_it)
TORVAN_JAVA_WRONG(class_names_in_a_descriptor_have_slashes_and_no_dots)
TORVAN_JAVA_WRONG(the_descriptor_of_a_method_begins_with_a_parenthesis)
TORVAN_JAVA_WRONG(the_descriptor_has_fewer_arguments_than_the_Cpp_signature)
TORVAN_JAVA_WRONG(the_descriptor_has_more_arguments_than_the_Cpp_signature)
TORVAN_JAVA_WRONG(an_argument_type_in_Cpp_does_not_fit_the_descriptor)
TORVAN_JAVA_WRONG(the_result_type_in_Cpp_does_not_fit_the_descriptor)
TORVAN_JAVA_WRONG(the_type_of_the_field_in_Cpp_does_not_fit_the_descriptor)
TORVAN_JAVA_WRONG(something_follows_the_end_of_the_descriptor)
}  // namespace wrong
#undef TORVAN_JAVA_WRONG

// Returns what follows the type that the descriptor begins with.
constexpr const char* SkipType(const char* descriptor) {
  while (*descriptor == '[') ++descriptor;
  if (*descriptor != 'L') {
    for (const char letter : {'Z', 'B', 'C', 'S', 'I', 'J', 'F', 'D', 'V'}) {
      if (*descriptor == letter) return descriptor + 1;
    }
    wrong::a_type_in_the_descriptor_is_none_of_Z_B_C_S_I_J_F_D_an_array_and_a_class();
  }
  for (; *descriptor != ';'; ++descriptor) {
    if (*descriptor == '\0') wrong::a_class_name_in_the_descriptor_has_no_semicolon_after_it();
    if (*descriptor == '.') wrong::class_names_in_a_descriptor_have_slashes_and_no_dots();
  }
  return descriptor + 1;
}

// A C++ type fits the shape of a type: Java's declared class may be another one, so any reference fits any other.
constexpr bool FitsShape(char letter, char first) { return letter == first || (letter == 'L' && first == '['); }

constexpr const char* CheckArgument(char letter, const char* descriptor) {
  if (*descriptor == ')') wrong::the_descriptor_has_fewer_arguments_than_the_Cpp_signature();
  const char* const next = SkipType(descriptor);
  if (!FitsShape(letter, *descriptor)) wrong::an_argument_type_in_Cpp_does_not_fit_the_descriptor();
  return next;
}

// Checks a method's descriptor against the letters of its result and its arguments.
template <typename... Letter>
constexpr void CheckMethodDescriptor(const char* descriptor, char result, Letter... arguments) {
  if (*descriptor++ != '(') wrong::the_descriptor_of_a_method_begins_with_a_parenthesis();
  ((descriptor = CheckArgument(arguments, descriptor)), ...);
  if (*descriptor++ != ')') wrong::the_descriptor_has_more_arguments_than_the_Cpp_signature();
  const char* const end = SkipType(descriptor);
  if (!FitsShape(result, *descriptor)) wrong::the_result_type_in_Cpp_does_not_fit_the_descriptor();
  if (*end != '\0') wrong::something_follows_the_end_of_the_descriptor();
}

constexpr void CheckFieldDescriptor(const char* descriptor, char letter) {
  const char* const end = SkipType(descriptor);
  if (!FitsShape(letter, *descriptor)) wrong::the_type_of_the_field_in_Cpp_does_not_fit_the_descriptor();
  if (*end != '\0') wrong::something_follows_the_end_of_the_descriptor();
}

}  // namespace torvan::java::detail
