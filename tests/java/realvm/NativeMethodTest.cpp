// C++ functions as native methods.
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Error;
using java::Local;
using java::Misuse;
using java::NativeMethod;
using java::Object;
using java::Ref;
using java::StaticMethod;

class NativeMethodTest : public RealVmTest {};

constexpr const char* NativesType = "fixture/Natives";
struct Natives {
  static constexpr char JavaName[] = "fixture/Natives";
};
struct ListOfJava {
  static constexpr char JavaName[] = "java/util/List";
};
constexpr java::Constructor<Natives(jint)> NewNatives;
constexpr java::Field<Natives, jint> Start{"start"};
constexpr StaticMethod<jint(jint, jlong, double)> Add{NativesType, "add"};
constexpr java::Method<Natives, jint(jint)> Plus{"plus"};

TEST_F(NativeMethodTest, StaticOnes) {
  NativeMethod<jint(jint, jlong, double)>(NativesType, "add").Bind([](jint a, jlong b, double c) {
    return a + static_cast<jint>(b) + static_cast<jint>(c);
  });
  EXPECT_EQ(Add(1, 20, 300.5), 321);
  constexpr NativeMethod<std::string(std::string_view, Ref<Object>)> join{NativesType, "join"};
  const std::string between = " and ";
  join.Bind([&](std::string_view a, Ref<Object> b) {
    return std::string(a) + between + java::Call<std::string>(b, "toString");
  });
  EXPECT_EQ(java::CallStatic<std::string>(NativesType, "join", "a", NewInteger(5)), "a and 5");
  NativeMethod<bool(bool, jbyte, char16_t, jshort, float)>(NativesType, "all")
      .Bind([](bool a, jbyte b, char16_t c, jshort d, float e) {
        return a && b == -1 && c == u'\u20ac' && d == -300 && e == 0.25f;
      });
  constexpr StaticMethod<bool(bool, jbyte, char16_t, jshort, float)> all{NativesType, "all"};
  EXPECT_TRUE(all(true, jbyte{-1}, u'\u20ac', jshort{-300}, 0.25f));
  EXPECT_FALSE(all(false, jbyte{-1}, u'\u20ac', jshort{-300}, 0.25f));
}

TEST_F(NativeMethodTest, ABooleanIsTrueWhateverItsBitsAre) {
  NativeMethod<jboolean(bool, jbyte, char16_t, jshort, float)>(NativesType, "all")
      .Bind([](bool, jbyte bits, char16_t, jshort, float) { return static_cast<jboolean>(bits); });
  constexpr StaticMethod<bool(bool, jbyte, char16_t, jshort, float)> all{NativesType, "all"};
  EXPECT_TRUE(all(true, jbyte{1}, u'x', jshort{0}, 0.0f));
  EXPECT_TRUE(all(true, jbyte{2}, u'x', jshort{0}, 0.0f));  // and not its lowest bit
  EXPECT_FALSE(all(true, jbyte{0}, u'x', jshort{0}, 0.0f));
}

// Of either kind, more than are passed in registers.
TEST_F(NativeMethodTest, ManyArguments) {
  using Many = float(jint, double, jlong, double, jint, double, jlong, double, jint, double, jshort, double, jbyte,
                     double, float, double, float);
  std::vector<double> given;
  NativeMethod<Many>(NativesType, "many").Bind([&](auto... arguments) {
    given = {static_cast<double>(arguments)...};
    return 0.25f;
  });
  constexpr StaticMethod<Many> many{NativesType, "many"};
  EXPECT_EQ(many(1, 2.5, 3, 4.5, -5, 6.5, jlong{7} << 40, 8.5, 9, -10.5, jshort{-11}, 12.5, jbyte{-13}, 14.5, 15.5f,
                 16.5, -17.5f),
            0.25f);
  EXPECT_THAT(given, testing::ElementsAre(1, 2.5, 3, 4.5, -5, 6.5, 7.0 * (jlong{1} << 40), 8.5, 9, -10.5, -11, 12.5,
                                          -13, 14.5, 15.5, 16.5, -17.5));
}

TEST_F(NativeMethodTest, ThoseOfObjects) {
  NativeMethod<jint(jint), Natives>("plus").Bind([](Ref<Natives> self, jint a) { return Start.Get(self) + a; });
  NativeMethod<Local<Natives>(), Natives>(NativesType, "self").Bind([](const Ref<Natives>& self) {
    return Local<Natives>(self);
  });
  const Local<Natives> natives = NewNatives(40);
  EXPECT_EQ(Plus(natives, 2), 42);
  EXPECT_TRUE(java::Same(java::Call<Local<Natives>>(natives, "self"), natives));
}

TEST_F(NativeMethodTest, BindingAgainReplaces) {
  for (jint i = 0; i < 200; ++i) {
    NativeMethod<jint(jint), Natives>("plus").Bind([i](Ref<Natives>, jint a) { return a + i; });
    EXPECT_EQ(Plus(NewNatives(0), 1), 1 + i);
  }
  NativeMethod<jint(jint), Natives>("plus").Bind([](Ref<Natives>, jint a) { return -a; });
  EXPECT_EQ(Plus(NewNatives(0), 1), -1);
}

// While it lives, Java calls the method as soon as a function is registered for it, or the function is refused.
class CalledAtOnce {
 public:
  explicit CalledAtOnce(bool isRefused) {
    s_real = java::detail::Env()->functions;
    s_isRefused = isRefused;
    s_table = *s_real;
    s_table.RegisterNatives = [](JNIEnv* env, jclass type, const JNINativeMethod* methods, jint count) -> jint {
      if (s_isRefused) return JNI_ERR;
      const jint status = s_real->RegisterNatives(env, type, methods, count);
      s_result = Add(0, 0, 0.0);
      return status;
    };
    java::detail::Env()->functions = &s_table;
  }
  CalledAtOnce(const CalledAtOnce&) = delete;
  CalledAtOnce& operator=(const CalledAtOnce&) = delete;
  ~CalledAtOnce() { java::detail::Env()->functions = s_real; }

  static jint Result() { return s_result; }

 private:
  static inline const JNINativeInterface_* s_real = nullptr;
  static inline JNINativeInterface_ s_table{};
  static inline bool s_isRefused = false;
  static inline jint s_result = 0;
};

TEST_F(NativeMethodTest, AFunctionThatWasReplacedByOneOfAnotherTypeIsNotCalledAgain) {
  constexpr NativeMethod<jint(jint, jlong, double)> add{NativesType, "add"};
  const auto bind = [&](jint value) { add.Bind([value](jint, jlong, double) { return value; }); };
  const auto bindOther = [&](jint value) { add.Bind([value](jint a, jlong, double) { return value + a; }); };
  const auto resultWhile = [](const auto& binding, jint value) {
    const CalledAtOnce called(false);
    binding(value);
    return CalledAtOnce::Result();
  };
  bind(1);
  EXPECT_EQ(resultWhile(bindOther, 2), 2);
  EXPECT_EQ(resultWhile(bind, 3), 3);
  EXPECT_EQ(resultWhile(bindOther, 4), 4);
  EXPECT_EQ(Add(0, 0, 0.0), 4);
  {
    const CalledAtOnce called(true);
    EXPECT_THROW(bind(5), java::Failure);
  }
  EXPECT_EQ(Add(0, 0, 0.0), 4);
  bind(6);
  EXPECT_EQ(Add(0, 0, 0.0), 6);
}

TEST_F(NativeMethodTest, ReplacedWhileThreadsCall) {
  std::atomic<bool> over{false};
  const auto bind = [](jint by) {
    NativeMethod<jint(jint), Natives>("plus").Bind([by](Ref<Natives>, jint a) { return a + by; });
  };
  bind(0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      const Local<Natives> natives = NewNatives(0);
      while (!over) {
        const jint sum = Plus(natives, 1);
        ASSERT_TRUE(sum >= 1 && sum <= 100) << sum;
      }
    });
  }
  for (jint i = 0; i < 100; ++i) bind(i);
  over = true;
  for (std::thread& thread : threads) thread.join();
}

TEST_F(NativeMethodTest, WhatItThrowsGoesToJava) {
  NativeMethod<void(std::string_view), Natives>("fail").Bind([](Ref<Natives>, std::string_view how) {
    if (how == "java") java::CallStatic<jint>("java/lang/Integer", "parseInt", "x");
    throw std::runtime_error(std::string(how));
  });
  const Local<Natives> natives = NewNatives(0);
  const auto what = [&](std::optional<std::string> how) {
    return WhatOf<Error>([&] { java::Method<Natives, void(std::optional<std::string>)>{"fail"}(natives, how); });
  };
  EXPECT_EQ(what("cpp"), "java.lang.RuntimeException: cpp");
  EXPECT_EQ(what("java"), "java.lang.NumberFormatException: For input string: \"x\"");
  EXPECT_EQ(what(std::nullopt),
            "java.lang.RuntimeException: argument 1 of fixture.Natives.fail(java.lang.String) is null, which its C++ "
            "type cannot be: take it as std::optional");
  NativeMethod<jint(std::string_view), Natives>("length").Bind(
      [](Ref<Natives>, std::string_view text) { return static_cast<jint>(text.size()); });
  EXPECT_EQ(java::Call<jint>(natives, "length", "four"), 4);
  EXPECT_EQ(WhatOf<Error>([&] { java::Call<jint>(natives, "length", nullptr); }),
            "java.lang.RuntimeException: argument 1 of fixture.Natives.length(java.lang.String) is null, which its C++ "
            "type cannot be: take it as std::optional");
}

TEST_F(NativeMethodTest, ObjectsOfAMoreSpecialClassAreTested) {
  int size = -1;
  NativeMethod<void(Ref<ListOfJava>)>(NativesType, "takes", "(Ljava/lang/Object;)V").Bind([&](Ref<ListOfJava> list) {
    size = list ? java::CallStatic<jint>(NativesType, "size", list) : 0;
  });
  constexpr StaticMethod<void(Ref<Object>)> takes{NativesType, "takes"};
  takes(java::CallStatic<Local<ListOfJava>>("java/util/Collections", "emptyList"));
  EXPECT_EQ(size, 0);
  takes(nullptr);
  EXPECT_EQ(WhatOf<Error>([&] { takes("text"); }),
            "java.lang.ClassCastException: argument 1 of fixture.Natives.takes(java.lang.Object) is a "
            "java.lang.String, and the C++ function takes a java.util.List");
  NativeMethod<void(jint, Ref<ListOfJava>), Natives>(NativesType, "takesSecond", "(ILjava/lang/Object;)V")
      .Bind([&](Ref<Natives>, jint, Ref<ListOfJava>) { size = 5; });
  constexpr java::Method<Natives, void(jint, Ref<Object>)> takesSecond{"takesSecond"};
  takesSecond(NewNatives(0), 1, nullptr);
  EXPECT_EQ(size, 5);
  EXPECT_EQ(WhatOf<Error>([&] { takesSecond(NewNatives(0), 1, "text"); }),
            "java.lang.ClassCastException: argument 2 of fixture.Natives.takesSecond(int, java.lang.Object) is a "
            "java.lang.String, and the C++ function takes a java.util.List");
}

TEST_F(NativeMethodTest, AResultOfAnotherClassThanJavaDeclaresIsRefused) {
  std::optional<java::Global<Object>> result;
  const auto give = [&](auto...) { return result; };
  const auto bind = [&](const char* name, const char* descriptor) {
    NativeMethod<std::optional<java::Global<Object>>(), Natives>(NativesType, name, descriptor)
        .Bind([&give](Ref<Natives>) { return give(); });
  };
  bind("self", "()Lfixture/Natives;");
  bind("list", "()Ljava/util/List;");
  bind("texts", "()[Ljava/lang/String;");
  bind("any", "()Ljava/lang/Object;");
  const Local<Natives> natives = NewNatives(7);
  const auto returned = [&](const char* name) -> std::string {
    try {
      return java::Call<Local<Object>>(natives, name) ? "an object" : "null";
    } catch (const Error& error) {
      return error.what();
    }
  };
  for (const char* const name : {"self", "list", "texts", "any"}) EXPECT_EQ(returned(name), "null");
  const auto refused = [](const char* name, const char* own, const char* declared) {
    return std::string("java.lang.ClassCastException: the C++ function of fixture.Natives.") + name + "() returned a " +
           own + ", and the method returns a " + declared;
  };
  result = java::Global<Object>(java::NewString("text"));
  EXPECT_EQ(returned("self"), refused("self", "java.lang.String", "fixture.Natives"));
  EXPECT_EQ(returned("list"), refused("list", "java.lang.String", "java.util.List"));
  EXPECT_EQ(returned("texts"), refused("texts", "java.lang.String", "java.lang.String[]"));
  EXPECT_EQ(returned("any"), "an object");
  result = java::Global<Object>(java::NewArray(std::vector<std::string>{"a"}));
  EXPECT_EQ(returned("texts"), "an object");
  EXPECT_EQ(returned("self"), refused("self", "[Ljava.lang.String;", "fixture.Natives"));
  result = java::Global<Object>(natives);
  EXPECT_EQ(returned("self"), "an object");
}

TEST_F(NativeMethodTest, AResultOfTheSameClassOfAnotherLoaderIsRefused) {
  constexpr StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
  const Local<java::Class> copy = copyOf("fixture.Natives");
  const auto other = java::Global<Natives>(java::Constructor<Natives(jint)>{}.In(copy)(1));
  NativeMethod<java::Global<Natives>(), Natives>("self").Bind([&](Ref<Natives>) { return other; });
  EXPECT_EQ(WhatOf<Error>([] { java::Call<Local<Natives>>(NewNatives(0), "self"); }),
            "java.lang.ClassCastException: the C++ function of fixture.Natives.self() returned a fixture.Natives of "
            "another class loader, and the method returns a fixture.Natives");
}

TEST_F(NativeMethodTest, WhatIsPendingGoesBeforeAWrongResult) {
  NativeMethod<Local<Object>(), Natives>(NativesType, "self", "()Lfixture/Natives;").Bind([](Ref<Natives>) {
    Local<Object> text = java::NewString("text");
    JNIEnv* const env = java::detail::Env();
    env->ThrowNew(java::detail::ClassOf<java::Throwable>(env), "left by raw JNI");
    return text;
  });
  EXPECT_EQ(WhatOf<Error>([] { java::Call<Local<Natives>>(NewNatives(0), "self"); }),
            "java.lang.Throwable: left by raw JNI");
}

struct OtherNatives {
  static constexpr char JavaName[] = "fixture/Natives$Other";
};

TEST_F(NativeMethodTest, AClassWhoseObjectsAreNotTheTagsIsRefused) {
  const auto plus = [](Ref<Natives> self, jint a) { return Start.Get(self) + a; };
  const Local<java::Class> other = java::FindClass(OtherNatives::JavaName);
  const std::string refused =
      "plus(int) cannot be bound: the tag names fixture.Natives, and a fixture.Natives$Other is none";
  EXPECT_EQ(WhatOf<Misuse>([&] { NativeMethod<jint(jint), Natives>("plus").In(other).Bind(plus); }), refused);
  EXPECT_EQ(WhatOf<Misuse>([&] { NativeMethod<jint(jint), Natives>(OtherNatives::JavaName, "plus").Bind(plus); }),
            refused);
  // A more general tag will do.
  NativeMethod<jint(jint), Object>(OtherNatives::JavaName, "plus").Bind([](Ref<Object> self, jint a) {
    return self ? -a : a;
  });
  EXPECT_EQ(java::Call<jint>(java::New<OtherNatives>(), "plus", 3), -3);
}

TEST_F(NativeMethodTest, TheTagsClassMayBeOfAnotherLoader) {
  constexpr StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
  const Local<java::Class> copy = copyOf("fixture.Natives");
  NativeMethod<jint(jint), Natives>("plus").In(copy).Bind([](Ref<Natives>, jint a) { return a * 2; });
  const Local<Natives> natives = java::Constructor<Natives(jint)>{}.In(copy)(0);
  EXPECT_EQ(Plus.In(copy)(natives, 21), 42);
  // Also of a class that extends the tag's.
  const Local<java::Class> derived = copyOf("fixture.Natives$Derived");
  NativeMethod<jint(jint), Natives>("fixture/Natives$Derived", "times").In(derived).Bind([](Ref<Natives>, jint a) {
    return a * 3;
  });
  const auto times = java::Method<Object, jint(jint)>{"times"}.In(derived);
  EXPECT_EQ(times(java::Constructor<Object()>{}.In(derived)(), 14), 42);
}

struct EarlyTo {
  static constexpr char JavaName[] = "fixture/Natives$EarlyTo";
};

TEST_F(NativeMethodTest, AClassIsNotInitialisedByIt) {
  NativeMethod<jint()>("fixture/Natives$Early", "early").Bind([] { return 7; });
  EXPECT_EQ(java::CallStatic<jint>("fixture/Natives$Early", "value"), 7);
  // Nor by a test of what it is given.
  NativeMethod<jint(std::optional<Local<EarlyTo>>)>("fixture/Natives$EarlyTo", "early", "(Ljava/lang/Object;)I")
      .Bind([](const std::optional<Local<EarlyTo>>&) { return 8; });
  EXPECT_EQ(java::CallStatic<jint>("fixture/Natives$EarlyTo", "value"), 8);
}

struct Incomplete {
  static constexpr char JavaName[] = "fixture/Natives$Incomplete";
};

TEST_F(NativeMethodTest, AClassThatAnotherMethodNamesMayBeMissing) {
  constexpr StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
  const Local<java::Class> copy = copyOf("fixture.Natives$Incomplete");
  const std::string missing = "java.lang.NoClassDefFoundError: fixture/Natives$Absent";
  EXPECT_EQ(WhatOf<Error>([&] { java::Call<Local<Object>>(copy, "getDeclaredMethods"); }), missing);
  const auto plus = [](jint a) { return a + 1; };
  NativeMethod<jint(jint)>(Incomplete::JavaName, "plus").In(copy).Bind(plus);
  constexpr StaticMethod<jint(jint)> callPlus{Incomplete::JavaName, "plus"};
  EXPECT_EQ(callPlus.In(copy)(3), 4);
  // The class of what the function returns is checked here, too.
  constexpr const char* descriptor = "()Lfixture/Natives$Incomplete;";
  NativeMethod<Local<Object>(), Incomplete>(Incomplete::JavaName, "self", descriptor)
      .In(copy)
      .Bind([](Ref<Incomplete>) -> Local<Object> { return java::NewString("text"); });
  const Local<Object> made = java::Constructor<Object()>{}.In(copy)();
  const auto self = java::Method<Object, Local<Object>()>{"self", descriptor}.In(copy);
  EXPECT_EQ(WhatOf<Error>([&] { self(made); }),
            "java.lang.ClassCastException: the C++ function of fixture.Natives$Incomplete.self() returned a "
            "java.lang.String, and the method returns a fixture.Natives$Incomplete");
  // A method that is not native or not there is refused with its usual message.
  EXPECT_EQ(WhatOf<Misuse>([&] { NativeMethod<jint(jint)>(Incomplete::JavaName, "notNative").In(copy).Bind(plus); }),
            "fixture.Natives$Incomplete.notNative(int) is not native");
  EXPECT_THAT(WhatOf<Error>([&] {
                NativeMethod<jint(jint), Incomplete>("plus").In(copy).Bind([](Ref<Incomplete>, jint a) { return a; });
              }),
              testing::AllOf(testing::StartsWith("java.lang.NoSuchMethodError: "),
                             testing::EndsWith(" (fixture.Natives$Incomplete.plus(int))")));
}

TEST_F(NativeMethodTest, WhatIsNotThereIsSaid) {
  const auto bind = [](auto method) { method.Bind([](jint a) { return a; }); };
  EXPECT_EQ(WhatOf<Error>([&] { bind(NativeMethod<jint(jint)>(NativesType, "missing")); }),
            "java.lang.NoSuchMethodError: missing (fixture.Natives has no static int missing(int), and nothing else of "
            "that name)");
  EXPECT_EQ(WhatOf<Misuse>([&] { bind(NativeMethod<jint(jint)>(NativesType, "notNative")); }),
            "fixture.Natives.notNative(int) is not native");
  EXPECT_EQ(WhatOf<Misuse>([&] { bind(NativeMethod<jint(jint)>(NativesType, "plus")); }),
            "fixture.Natives.plus(int) is not static: give NativeMethod the tag of its class as second argument");
  EXPECT_EQ(WhatOf<Misuse>([] {
              NativeMethod<Local<Object>(), Natives>("unbound").Bind([](Ref<Natives>) { return Local<Object>(); });
            }),
            "fixture.Natives.unbound() is static: NativeMethod takes no tag for it");
  EXPECT_EQ(WhatOf<Misuse>([&] { bind(NativeMethod<jint(jint)>("fixture/Natives$Heir", "inherited")); }),
            "fixture.Natives$Heir.inherited(int) is inherited: bind it in the class that declares it");
  EXPECT_EQ(WhatOf<Error>([&] { bind(NativeMethod<jint(jint)>("no/Such", "plus")); }).substr(0, 40),
            "java.lang.ClassNotFoundException: no.Suc");
  EXPECT_EQ(WhatOf<Misuse>([&] { bind(NativeMethod<jint(jint)>(NativesType, "add").In(Local<java::Class>())); }),
            "null is given as the class that fixture.Natives.add(int) is bound in");
  EXPECT_EQ(WhatOf<Misuse>([&] { NativeMethod<jint(jint)>(NativesType, "add").Bind(std::function<jint(jint)>()); }),
            "an empty function is given for add");
}

}  // namespace
}  // namespace tests
