// Class loaders: which they ask first, what they close, and when Java collects them.
#include <thread>

#include "java/realvm/JavaFiles.h"
#include "java/realvm/MembersTags.h"
#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::ClassLoader;
using java::ContextClassLoader;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticMethod;

struct Callable {
  static constexpr char JavaName[] = "java/util/concurrent/Callable";
};
struct Task {
  static constexpr char JavaName[] = "fixture/Task";
  using Super = Callable;
};
struct Plugin {
  static constexpr char JavaName[] = "fixture/Plugin";
};
struct Loader {
  static constexpr char JavaName[] = "java/lang/ClassLoader";
};
struct JavaThread {
  static constexpr char JavaName[] = "java/lang/Thread";
};

constexpr java::Method<Callable, std::string()> CallIt{"call", "()Ljava/lang/Object;"};
constexpr StaticMethod<Local<Object>()> Services{"fixture/Services", "all", "()Ljava/lang/Iterable;"};
constexpr StaticMethod<Local<JavaThread>()> CurrentThread{"java/lang/Thread", "currentThread"};
constexpr java::Method<JavaThread, Local<Loader>()> GetContext{"getContextClassLoader"};
constexpr java::Method<JavaThread, void(Ref<Loader>)> SetContext{"setContextClassLoader"};

Local<Loader> Context() { return GetContext(CurrentThread()); }

class ClassLoaderTest : public NothingLeftTest {
 protected:
  void SetUp() override { SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES); }

  static ClassLoader Others() { return ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}); }
};

TEST_F(ClassLoaderTest, AsksItsParentFirst) {
  const ClassLoader alone = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}, ClassLoader::Platform());
  EXPECT_TRUE(alone.FindClass("fixture/Plugin"));
  EXPECT_TRUE(alone.FindClass("java/util/ArrayList"));
  EXPECT_THAT(ErrorOf([&] { alone.FindClass("fixture/Members"); }),
              testing::StartsWith("java.lang.ClassNotFoundException: fixture.Members"));
  EXPECT_TRUE(Others().FindClass("fixture/Members"));
  const ClassLoader child = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}, alone);
  EXPECT_TRUE(java::Same(child.FindClass("fixture/Plugin"), alone.FindClass("fixture/Plugin")));
  EXPECT_FALSE(java::Same(Others().FindClass("fixture/Plugin"), alone.FindClass("fixture/Plugin")));
}

TEST_F(ClassLoaderTest, FindsArraysOfItsClasses) {
  const ClassLoader others = Others();
  const Local<java::Class> type = others.FindClass("fixture/Plugin");
  const auto make = java::Constructor<Plugin(jint)>{}.In(type);
  std::vector<Local<Plugin>> plugins;
  for (const jint number : {1, 2}) plugins.push_back(make(number));
  const Local<java::Array<Plugin>> array = java::NewArray(plugins, type);
  EXPECT_TRUE(java::Same(java::Call<Local<java::Class>>(array, "getClass"), others.FindClass("[Lfixture.Plugin;")));
  EXPECT_EQ(java::Elements<Plugin>(array).size(), 2u);
  EXPECT_EQ(java::Call<jint>(java::Elements<Plugin>(array).At(1), "number"), 2);
  EXPECT_THAT(ErrorOf([&] { java::NewArray(plugins); }), testing::HasSubstr("fixture.Plugin (not on the class path "));
}

TEST_F(ClassLoaderTest, AnArrayOfItsClassesIsMadeWithTheClass) {
  const java::Global<java::Class> type(Others().FindClass("fixture/Plugin"));
  const auto vector = [make = java::Constructor<Plugin(jint)>{}.In(type)] {
    std::vector<Local<Plugin>> plugins;
    for (const jint number : {1, 2}) plugins.push_back(make(number));
    return plugins;
  };
  const std::vector<Local<Plugin>> plugins = vector();
  constexpr StaticMethod<jint(Ref<java::Array<Plugin>>)> sum{"fixture/Plugin", "sum"};
  constexpr StaticMethod<jint(const std::vector<Local<Plugin>>&)> sumOfVector{"fixture/Plugin", "sum"};
  EXPECT_EQ(sum.In(type)(java::NewArray(plugins, type)), 3);
  EXPECT_THAT(ErrorOf([&] { sumOfVector.In(type)(plugins); }),
              testing::EndsWith("and make arrays of it with NewArray(vector, class))"));

  constexpr StaticMethod<jint(Ref<Object>)> sumOf{"fixture/Plugin", "sumOf", "(Lfixture/Plugin$Source;)I"};
  const Local<java::Class> source = java::ClassLoader::Of(type).FindClass("fixture/Plugin$Source");
  const auto made = [&] { return java::NewArray(vector(), type); };
  EXPECT_EQ(sumOf.In(type)(java::Implement(source).On("plugins", made).New()), 3);
  // Its types are found by the interface's loader.
  constexpr StaticMethod<bool(Ref<Object>, Ref<Object>)> isSame{"fixture/Plugin", "isSame",
                                                                "(Lfixture/Plugin$Source;Lfixture/Plugin;)Z"};
  const auto same = [](Local<Plugin> plugin) { return plugin; };
  EXPECT_TRUE(isSame.In(type)(java::Implement(source).On("same", same).New(), plugins[0]));
  try {
    sumOf.In(type)(java::Implement(source).On("plugins", vector).New());
    FAIL() << "nothing was thrown";
  } catch (const java::Error& error) {
    EXPECT_STREQ(error.what(), "java.lang.reflect.UndeclaredThrowableException");
    EXPECT_STREQ(error.Cause().value().what(), "java.lang.ClassNotFoundException: fixture.Plugin");
  }
}

struct Arrays {
  static constexpr char JavaName[] = "fixture/Arrays";
};

// The class path has a class of that name, too.
TEST_F(ClassLoaderTest, AVectorBecomesAnArrayOfTheClassPathsClass) {
  constexpr StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
  const Local<java::Class> copy = copyOf("fixture.Arrays");
  constexpr StaticMethod<std::vector<Local<Arrays>>(const std::vector<Local<Arrays>>&)> same{"fixture/Arrays", "same"};
  const auto sameOfCopy = same.In(copy);
  std::vector<Local<Arrays>> arrays;
  EXPECT_EQ(WhatOf<Misuse>([&] { sameOfCopy(arrays); }),
            "a [Lfixture.Arrays; is given as argument 1 of fixture.Arrays.same(fixture.Arrays[]), which needs a "
            "[Lfixture.Arrays; of another class loader");
  arrays.push_back(java::Constructor<Arrays()>{}.In(copy)());
  EXPECT_THAT(ErrorOf([&] { sameOfCopy(arrays); }),
              testing::AllOf(testing::StartsWith("java.lang.ArrayStoreException"),
                             testing::EndsWith(" (of another class loader: make the array with NewArray(vector, "
                                               "class))")));
  constexpr StaticMethod<std::vector<Local<Arrays>>(Ref<java::Array<Arrays>>)> sameArray{"fixture/Arrays", "same"};
  EXPECT_TRUE(java::Same(sameArray.In(copy)(java::NewArray(arrays, copy)).at(0), arrays[0]));
}

TEST_F(ClassLoaderTest, ACallWithoutADeclarationTellsClassesOfOneNameApart) {
  const ClassLoader first = Others();
  const java::Constructor<Plugin(jint)> make;
  const Local<Plugin> own = make.In(first.FindClass("fixture/Plugin"))(1);
  const Local<Plugin> same = make.In(first.FindClass("fixture/Plugin"))(2);
  const Local<Plugin> other = make.In(Others().FindClass("fixture/Plugin"))(4);
  EXPECT_EQ(java::Call<jint>(own, "plus", same), 3);
  EXPECT_EQ(WhatOf<Misuse>([&] { java::Call<jint>(own, "plus", other); }),
            "a fixture.Plugin is given as argument 1 of fixture.Plugin.plus(fixture.Plugin), which needs a "
            "fixture.Plugin of another class loader");
  const Local<java::Class> type = first.FindClass("fixture/Plugin");
  EXPECT_EQ(java::CallStatic<jint>(type, "twice", own), 2);
  EXPECT_EQ(WhatOf<Misuse>([&] { java::CallStatic<jint>(type, "lambda$twice$0", own); }),
            "fixture.Plugin.lambda$twice$0(fixture.Plugin) is a method that Java's compiler added: "
            "declare it as a Method to call it");
}

// As if no other loader had been seen before.
TEST_F(ClassLoaderTest, AClassThatAnotherLoaderFoundHasItsObjectsTested) {
  const bool before = java::detail::otherLoaders.exchange(false);
  const Local<java::Class> type = Others().FindClass("fixture/Plugin");
  EXPECT_TRUE(java::detail::otherLoaders.exchange(false));
  ClassLoader::System().FindClass("fixture/Members");
  EXPECT_FALSE(java::detail::otherLoaders);
  java::CallStatic<std::string>(type, "where");
  EXPECT_TRUE(java::detail::otherLoaders.exchange(false));
  StaticMethod<std::string()>{"fixture/Plugin", "where"}.In(type);
  EXPECT_TRUE(java::detail::otherLoaders.exchange(before));
}

TEST_F(ClassLoaderTest, HasItsOwnStaticFields) {
  const java::StaticField<jint> calls{"fixture/Task", "calls"};
  const auto first = calls.In(Others().FindClass("fixture/Task"));
  const auto second = calls.In(Others().FindClass("fixture/Task"));
  first.Set(5);
  EXPECT_EQ(first.Get(), 5);
  EXPECT_EQ(second.Get(), 0);
}

TEST_F(ClassLoaderTest, OnceClosedItKeepsWhatIsLoaded) {
  const ClassLoader others = Others();
  const Local<java::Class> type = others.FindClass("fixture/Task");
  const auto late = StaticMethod<std::string()>{"fixture/Task", "late"}.In(type);
  others.Close();
  others.Close();
  EXPECT_EQ(CallIt(java::Constructor<Task()>{}.In(type)()), "from elsewhere, 1");
  EXPECT_TRUE(others.FindClass("fixture/Task"));
  EXPECT_EQ(ErrorOf([&] { others.FindClass("fixture/Plugin"); }),
            "java.lang.ClassNotFoundException: fixture.Plugin (looked for by a java.net.URLClassLoader)");
  EXPECT_THAT(ErrorOf([&] { late(); }), testing::StartsWith("java.lang.NoClassDefFoundError: fixture/Task$Late"));
}

TEST_F(ClassLoaderTest, IsOneAlsoWhenItWasMoved) {
  ClassLoader first = Others();
  const ClassLoader second = std::move(first);
  EXPECT_TRUE(first.FindClass("fixture/Plugin"));
  first.Close();
  EXPECT_TRUE(java::Same(first.Loader(), second.Loader()));
}

TEST_F(ClassLoaderTest, OfAnObjectOrAClass) {
  const ClassLoader others = Others();
  const Local<java::Class> type = others.FindClass("fixture/Plugin");
  EXPECT_TRUE(java::Same(ClassLoader::Of(type).Loader(), others.Loader()));
  EXPECT_TRUE(java::Same(ClassLoader::Of(java::Constructor<Plugin(jint)>{}.In(type)(1)).Loader(), others.Loader()));
  EXPECT_EQ(WhatOf<Misuse>([] { ClassLoader::Of(nullptr); }), "null has no class loader");
  EXPECT_EQ(WhatOf<Misuse>([] { ClassLoader::Of(java::NewString("text")); }),
            "the class is the VM's own, which no class loader has");
}

TEST_F(ClassLoaderTest, OnesThatCannotBeClosedSaySo) {
  const std::string what = WhatOf<Misuse>([] { ClassLoader::System().Close(); });
  EXPECT_THAT(what, testing::EndsWith("AppClassLoader is no class loader that can be closed"));
}

TEST_F(ClassLoaderTest, AScopeSetsTheContextClassLoader) {
  const ClassLoader others = Others();
  const java::Global<Loader> before(Context());
  {
    const ContextClassLoader scope(others);
    EXPECT_TRUE(java::Same(Context(), others.Loader()));
    {
      const ClassLoader inner = Others();
      const ContextClassLoader innerScope(inner);
      EXPECT_TRUE(java::Same(Context(), inner.Loader()));
    }
    EXPECT_TRUE(java::Same(Context(), others.Loader()));
    std::thread([&] { EXPECT_TRUE(java::Same(Context(), before)); }).join();
  }
  EXPECT_TRUE(java::Same(Context(), before));
}

TEST_F(ClassLoaderTest, AScopeThatAFailureLeavesSetsWhatWasBefore) {
  const Local<Loader> before = Context();
  EXPECT_NE(ErrorOf([] {
              const ContextClassLoader scope(Others());
              java::FindClass("no/Such");
            }),
            "nothing");
  EXPECT_TRUE(java::Same(Context(), before));
  SetContext(CurrentThread(), nullptr);
  { const ContextClassLoader scope(Others()); }
  EXPECT_FALSE(Context());
  SetContext(CurrentThread(), before);
}

TEST_F(ClassLoaderTest, WhatIsPendingIsThrownFirst) {
  const ClassLoader others = Others();
  const Local<java::String> text = java::NewString("text");
  ExpectWhatIsPendingFirst([] { java::FindClass("java/lang/Integer"); });
  ExpectWhatIsPendingFirst([&] { others.FindClass("fixture/Task"); });
  ExpectWhatIsPendingFirst([] { ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}); });
  ExpectWhatIsPendingFirst([&] { ClassLoader::OfJars({}, others); });
  ExpectWhatIsPendingFirst([&] { ClassLoader::Of(text); });
  ExpectWhatIsPendingFirst([&] { others.Close(); });
  ExpectWhatIsPendingFirst([] { ClassLoader::System(); });
  ExpectWhatIsPendingFirst([] { ClassLoader::Platform(); });
  ExpectWhatIsPendingFirst([&] { const ContextClassLoader scope(others); });
}

TEST_F(ClassLoaderTest, AMissingMethodThatIsPendingIsNotTakenForOneOfPlatforms) {
  JNIEnv* const env = java::detail::Env();
  env->ThrowNew(static_cast<jclass>(java::FindClass("java/lang/NoSuchMethodError").Get()), "left by raw JNI");
  EXPECT_EQ(ErrorOf([] { ClassLoader::Platform(); }), "java.lang.NoSuchMethodError: left by raw JNI");
}

TEST_F(ClassLoaderTest, AScopeKeepsWhatIsPending) {
  const Local<Loader> before = Context();
  {
    const ContextClassLoader scope(Others());
    JNIEnv* const env = java::detail::Env();
    env->ThrowNew(java::detail::ClassOf<java::Throwable>(env), "left by raw JNI");
  }
  const auto pending = java::TakePending();
  ASSERT_TRUE(pending);
  EXPECT_EQ(pending->Message(), "left by raw JNI");
  EXPECT_TRUE(java::Same(Context(), before));
}

TEST_F(ClassLoaderTest, ServicesAreFoundThroughTheContext) {
  const ClassLoader others = Others();
  const auto answers = [] {
    std::vector<std::string> all;
    for (const auto& service : java::Each<Callable>(Services())) all.push_back(CallIt(service));
    return all;
  };
  EXPECT_THAT(answers(), testing::ElementsAre());
  const ContextClassLoader scope(others);
  EXPECT_THAT(answers(), testing::ElementsAre("from elsewhere, 1"));
}

TEST_F(ClassLoaderTest, IsCollectedWithItsClassesOnceNothingHoldsIt) {
  java::Weak<Object> weak;
  java::Weak<java::Class> weakClass;
  {
    const ClassLoader others = Others();
    weak = others.WeakReference();
    const Local<java::Class> type = others.FindClass("fixture/Task");
    weakClass = java::Weak<java::Class>(type);
    const auto make = java::Constructor<Task()>{}.In(type);
    const ContextClassLoader scope(others);
    EXPECT_EQ(CallIt(make()), "from elsewhere, 1");
    EXPECT_EQ(java::Call<std::string>(make(), "call"), "from elsewhere, 2");
    EXPECT_NE(ErrorOf([&] { others.FindClass("no/Such"); }), "nothing");
    EXPECT_NE(ErrorOf([&] { java::Method<Task, jint()>{"missing"}.In(type); }), "nothing");
    java::CallStatic<void>("java/lang/System", "gc");
    EXPECT_TRUE(weak.Lock());
    EXPECT_TRUE(weakClass.Lock());
    others.Close();
  }
  for (int i = 0; i < 20 && weak.Lock(); ++i) java::CallStatic<void>("java/lang/System", "gc");
  EXPECT_FALSE(weak.Lock());
  EXPECT_FALSE(weakClass.Lock());
}

TEST_F(ClassLoaderTest, NothingIsLeft) {
  const ClassLoader others = Others();
  ExpectNothing([&] { const ContextClassLoader scope(others); });
  ExpectNothing([] { Others().Close(); });
  ExpectNothing([] { ClassLoader::Platform(); });
  ExpectNothingOfThrowing([] { ClassLoader::System().Close(); });
  ExpectNothingOfThrowing([] { ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES, "no/such.jar"}); });
  ExpectNothingWhereverItFails([] { Others(); }, 4);
  // Before Java 9 most of the steps make the text that says that there is no such method, and may fail.
  if (!BeforeJava9()) ExpectNothingWhereverItFails([] { ClassLoader::Platform(); }, 1);
}

TEST_F(ClassLoaderTest, AScopeThatFailsLeavesNothing) {
  const ClassLoader others = Others();
  const ContextClassLoader outer(ClassLoader::System());  // sets the thread's own again
  JNIEnv* const env = java::detail::Env();
  for (int step = 1; step <= 3; ++step) {
    const CountedReferences counted(env);
    CountedReferences::FailAt(step);
    EXPECT_EQ(WhatOf<java::Error>([&] { const ContextClassLoader inner(others); }),
              "java.lang.OutOfMemoryError: as the test wants");
    EXPECT_EQ(counted.Locals(), 0) << "step " << step;
  }
  const CountedReferences counted(env);
  CountedReferences::FailAt(4);
  { const ContextClassLoader scope(others); }  // its end throws nothing
  EXPECT_TRUE(CountedReferences::HasFailed());
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  EXPECT_EQ(counted.Locals(), 0);
}

}  // namespace
}  // namespace tests
