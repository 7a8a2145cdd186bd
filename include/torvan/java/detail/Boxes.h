// Numbers as objects of Java's classes for them.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

// Java's class for numbers of a letter.
template <char Letter>
struct Boxed;
// clang-format off
template <> struct Boxed<'Z'> { static constexpr char JavaName[] = "java/lang/Boolean"; };
template <> struct Boxed<'B'> { static constexpr char JavaName[] = "java/lang/Byte"; };
template <> struct Boxed<'C'> { static constexpr char JavaName[] = "java/lang/Character"; };
template <> struct Boxed<'S'> { static constexpr char JavaName[] = "java/lang/Short"; };
template <> struct Boxed<'I'> { static constexpr char JavaName[] = "java/lang/Integer"; };
template <> struct Boxed<'J'> { static constexpr char JavaName[] = "java/lang/Long"; };
template <> struct Boxed<'F'> { static constexpr char JavaName[] = "java/lang/Float"; };
template <> struct Boxed<'D'> { static constexpr char JavaName[] = "java/lang/Double"; };
// clang-format on

// The class of the object that a number of the letter becomes. Throws Error.
jclass BoxClass(JNIEnv* env, char letter);

// Makes the object of a number, as Java's valueOf does: a new local reference. Throws Error.
jobject Box(JNIEnv* env, char letter, jvalue number);

// The number in an object, which is of the letter's class. Throws Error when the class cannot be loaded.
jvalue Unbox(JNIEnv* env, char letter, jobject object);

}  // namespace torvan::java::detail
