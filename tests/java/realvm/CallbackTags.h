// Tags and members of what calls C++ in the tests.
#pragma once

#include <string>

#include "java/realvm/Fixtures.h"

namespace tests {

struct Callbacks {
  static constexpr char JavaName[] = "fixture/Callbacks";
};
struct Every {
  static constexpr char JavaName[] = "fixture/Callbacks$Every";
};
struct Shape {
  static constexpr char JavaName[] = "fixture/Callbacks$Shape";
};
struct NamedSupplier {
  static constexpr char JavaName[] = "fixture/Callbacks$Named";
};
struct Shout {
  static constexpr char JavaName[] = "fixture/Callbacks$Shout";
};
struct Comparator {
  static constexpr char JavaName[] = "java/util/Comparator";
};
struct Runnable {
  static constexpr char JavaName[] = "java/lang/Runnable";
};
struct IntOperator {
  static constexpr char JavaName[] = "java/util/function/IntUnaryOperator";
};
struct Function {
  static constexpr char JavaName[] = "java/util/function/Function";
};
struct Consumer {
  static constexpr char JavaName[] = "java/util/function/Consumer";
};
struct Iterator {
  static constexpr char JavaName[] = "java/util/Iterator";
};
struct Objects {
  static constexpr char JavaName[] = "[Ljava/lang/Object;";
};

constexpr java::StaticMethod<std::string(java::Ref<Runnable>)> Thrown{"fixture/Callbacks", "thrown"};
constexpr java::StaticMethod<jint(java::Ref<IntOperator>, jint)> Nest{"fixture/Callbacks", "nest"};
constexpr java::StaticMethod<std::string(java::Ref<IntOperator>, jint, jlong)> NestInThread{"fixture/Callbacks",
                                                                                            "nestInThread"};
constexpr java::StaticMethod<jlong(java::Ref<IntOperator>, jint, jint)> CallFromThreads{"fixture/Callbacks",
                                                                                        "callFromThreads"};
constexpr java::StaticMethod<void()> Collect{"fixture/Callbacks", "collect"};

constexpr java::StaticMethod<void(java::Ref<Runnable>)> RunAtTheEnd{"fixture/Callbacks", "runAtTheEnd"};
constexpr java::StaticMethod<std::string(java::Ref<Shape>)> CallShape{"fixture/Callbacks", "shape"};
constexpr java::StaticMethod<std::string(java::Ref<Shape>)> ThrownByCheck{"fixture/Callbacks", "thrownByCheck"};
constexpr java::StaticMethod<std::string(java::Ref<Function>, java::Ref<java::Object>)> Applied{
    "fixture/Callbacks", "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
constexpr java::StaticMethod<jint(jint)> Abs{"java/lang/Math", "abs"};

}  // namespace tests
