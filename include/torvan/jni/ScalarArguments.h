// The arguments that follow a signature.
#pragma once

#include <cstdlib>
#include <type_traits>

namespace torvan::jni {

// The operations that call Java take the Java method's arguments after its signature, in order, through `...`. Nothing
// converts them there: each is passed as it is, and the VM reads what the descriptor says. So an argument must be
//
//   for L and [          a JNI reference: static_cast<jobject>(handle), static_cast<jstring>(text), or nullptr
//   for J                a jlong: jlong{1}, not 1, which has half its width
//   for Z, B, C, S, I    an integer no wider than jint
//   for F, D             a float or a double
//
// A handle or a C++ text is no JNI reference and would crash the VM, so the compiler refuses whatever is no scalar
// (number, enumerator or pointer). It cannot see the descriptor: a number of the wrong kind or width, or a pointer that
// is no reference, compiles and is undefined behaviour, as it is in JNI.
//
// The refusals are overloads that take part in no other call. Because they are templates, code that takes the address
// of an operation has to name its type, in a cast or as the type of a variable; it is not deduced.

// Whether all arguments may be passed through `...`. Arrays and functions may: they are passed as pointers.
template <typename... Given>
inline constexpr bool AreScalars = (std::is_scalar_v<std::decay_t<const Given&>> && ...);

// The result of a call that is refused. A call with nothing but scalars has none, so its refusal is no candidate.
template <typename Result, typename... Given>
using RefusedCall = std::enable_if_t<!AreScalars<Given...>, Result>;

// Ends the compilation of a call that is refused. `Operation` is a different type for each operation: a compiler
// reports a failed assertion once for the same types.
template <typename Result, typename Operation, typename... Given>
[[noreturn]] Result RefuseCall() {
  static_assert(
      AreScalars<Given...>,
      "a handle is passed as static_cast<jobject>(handle), a text as the handle of a Java string: only numbers, "
      "enumerators and pointers can follow a signature");
  std::abort();
}

}  // namespace torvan::jni

// The refusal of an operation with this result and these parameters before `...`.
#define TORVAN_REFUSE(Result, Name, ...)                                   \
  template <typename... Given>                                             \
  RefusedCall<Result, Given...> Name(__VA_ARGS__, const Given&...) const { \
    return RefuseCall<Result, struct Operation, Given...>();               \
  }

// The same for a family of operations, one for each Java type, whose names and signatures are of this kind of text.
// clang-format off
#define TORVAN_REFUSE_FAMILY(Call, Text) \
  TORVAN_REFUSE(CJavaObject, Call##ObjectMethod, Text, Text) TORVAN_REFUSE(jboolean, Call##BooleanMethod, Text, Text) \
  TORVAN_REFUSE(jbyte, Call##ByteMethod, Text, Text)         TORVAN_REFUSE(jchar, Call##CharMethod, Text, Text)       \
  TORVAN_REFUSE(jshort, Call##ShortMethod, Text, Text)       TORVAN_REFUSE(jint, Call##IntMethod, Text, Text)         \
  TORVAN_REFUSE(jlong, Call##LongMethod, Text, Text)         TORVAN_REFUSE(jfloat, Call##FloatMethod, Text, Text)     \
  TORVAN_REFUSE(jdouble, Call##DoubleMethod, Text, Text)     TORVAN_REFUSE(void, Call##VoidMethod, Text, Text)
// clang-format on
