// Calls leave no reference, whether they succeed or fail.
#include <functional>
#include <stdexcept>
#include <string>

#include "ThreadSanitizer.h"
#include "java/realvm/JavaFiles.h"
#include "java/realvm/MembersTags.h"
#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::Constructor;
using java::Field;
using java::Global;
using java::Local;
using java::Method;
using java::Object;
using java::Ref;
using java::StaticMethod;

struct Values {
  static constexpr char JavaName[] = "fixture/Values";
};

class MemberLeavesNothingTest : public NothingLeftTest {};

constexpr StaticMethod<std::string(std::string_view)> Same{"fixture/Values", "same"};
constexpr StaticMethod<Local<Object>(Ref<Object>)> SameObject{"fixture/Values", "same"};
constexpr Constructor<Values()> Make;
constexpr Field<Values, std::string> Text{"textField"};
constexpr Field<Values, Local<Object>> Any{"objectField"};

TEST_F(MemberLeavesNothingTest, TheCountSeesWhatIsLeft) {
  const Global<Values> first{Make()};  // deletes what other threads have dropped
  const CountedReferences counted(java::detail::Env());
  const Local<Values> values = Make();
  EXPECT_EQ(counted.Locals(), 1);
  const Global<Values> global(values);
  EXPECT_EQ(counted.Globals(), 1);
  const java::Weak<Values> weak(values);
  EXPECT_EQ(counted.Weaks(), 1);
}

TEST_F(MemberLeavesNothingTest, AfterReferencesOfAllKinds) {
  const Local<Values> values = Make();
  ExpectNothing([&] {
    const Global<Object> global(values);
    const java::Weak<Object> weak(global);
    const java::Weak<Object> copy = weak;
    EXPECT_TRUE(copy.Lock());
    EXPECT_TRUE(java::Cast<Values>(global));
    EXPECT_FALSE(java::Weak<Object>(nullptr).Lock());
  });
  ExpectNothingWhereverItFails([&] { const java::Weak<Values> weak(values); }, 1);
}

TEST_F(MemberLeavesNothingTest, AfterAMillionCalls) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  static constexpr StaticMethod<std::optional<jint>(std::optional<jint>)> SameNumber{"fixture/Values", "same"};
  const Local<Values> values = Make();
  const java::Thread thread;
  ExpectNothing(
      [&] {
        Same(thread, "Zo\xC3\xAB");
        SameNumber(thread, 1000);
        SameObject(values);
        Text.Set(thread, values, u"text");
      },
      250000);
}

TEST_F(MemberLeavesNothingTest, AfterCallsThatReturn) {
  static constexpr StaticMethod<Global<Object>(Ref<Object>)> SameGlobal{"fixture/Values", "same"};
  const Local<Values> values = Make();
  ExpectNothing([] { Same(std::string(5000, 'x')); });
  ExpectNothing([&] { SameGlobal(values); });
  Text.Set(values, "text");
  ExpectNothing([&] { Text.Get(values); });
  ExpectNothing([&] { Any.Get(values); });
  ExpectNothing([&] { Any.Set(values, "text"); });
  ExpectNothing([] { Make(); });
  ExpectNothing([] { java::ToText(java::NewString("text")); });
  ExpectNothing([] { java::FindClass("java/lang/Object"); });
}

// What such a member needs to test the objects is not looked up anew, and not kept anew, with each call.
TEST_F(MemberLeavesNothingTest, AfterMembersThatAreDeclaredInsideAFunction) {
  const Local<ArrayList> list = java::New<ArrayList>();
  java::Call<void>(list, "add", "text");
  ExpectNothing([&] {
    constexpr StaticMethod<std::string(Ref<Object>)> listed{"fixture/Members", "listed",
                                                            "(Ljava/util/List;)Ljava/lang/String;"};
    constexpr Method<ArrayList, std::string(jint)> get{"get", "(I)Ljava/lang/Object;"};
    listed(list);
    get(list, 0);
  });
}

TEST_F(MemberLeavesNothingTest, AfterCallsThatThrow) {
  static constexpr StaticMethod<std::string(std::string_view, std::string_view)> Missing{"fixture/Members", "missing"};
  static constexpr StaticMethod<void()> NoClass{"fixture/NoSuch", "missing"};
  static constexpr StaticMethod<void(std::string_view)> Fails{"fixture/Members", "fails"};
  static constexpr StaticMethod<std::string(std::string_view, std::string_view)> Two{
      "fixture/Members", "over", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/String;"};
  static constexpr StaticMethod<std::optional<jint>(Ref<Object>)> Number{"fixture/Values", "any",
                                                                         "(Ljava/lang/Object;)Ljava/lang/Object;"};
  static constexpr StaticMethod<std::string(Ref<Object>)> Listed{"fixture/Members", "listed",
                                                                 "(Ljava/util/List;)Ljava/lang/String;"};
  static constexpr Method<ArrayList, Local<Derived>(jint)> Get{"get", "(I)Ljava/lang/Object;"};
  static constexpr Method<ArrayList, bool(Ref<Object>)> Add{"add"};
  const Local<ArrayList> list = java::New<ArrayList>();
  Add(list, "text");
  ExpectNothingOfThrowing([] { Fails("reason"); });
  ExpectNothingOfThrowing([] { Same("not \xFF UTF-8"); });
  ExpectNothingOfThrowing([] { Two("first", "not \xFF UTF-8"); });
  ExpectNothingOfThrowing([] { Same(nullptr); });
  ExpectNothingOfThrowing([] { Number("five"); });
  ExpectNothingOfThrowing([] { Listed("text"); });
  ExpectNothingOfThrowing([&] { Get(list, 0); });
  ExpectNothingOfThrowing([&] { Get(list, 5); });
  ExpectNothingOfThrowing([] { Missing("a", "b"); });
  ExpectNothingOfThrowing([] { NoClass(); });
  ExpectNothingOfThrowing([] { Text.Get(Local<Values>()); });
}

TEST_F(MemberLeavesNothingTest, AfterCallsThatAreLookedUp) {
  const Local<ArrayList> list = java::New<ArrayList>();
  ExpectNothing([&] { java::Call<void>(list, "add", 0, "text"); });
  ExpectNothing([&] { java::Call<void>(list, "clear"); });
  ExpectNothing([] { java::CallStatic<void>("java/lang/String", "valueOf", 5); });
  ExpectNothing([] { java::CallStatic<std::string>("fixture/Members", "boxed", 5); });
  ExpectNothing([] { java::New<Derived>("text"); });
  ExpectNothingOfThrowing([&] { java::Call<void>(list, "add", 1, 2, 3); });
  ExpectNothingOfThrowing([] { java::CallStatic<std::string>("fixture/Members", "two", 1, 2); });
  ExpectNothingOfThrowing([] { java::CallStatic<std::string>("fixture/Members", "asObject", NewInteger(5)); });
  ExpectNothingOfThrowing([] { java::CallStatic<jint>("fixture/Members", "asObject", "text"); });
  ExpectNothingOfThrowing([] { java::CallStatic<std::string>("fixture/Values", "none"); });
}

TEST_F(MemberLeavesNothingTest, WhereverJavaHasNoMemory) {
  static constexpr StaticMethod<std::optional<jint>(std::optional<jint>)> SameNumber{"fixture/Values", "same"};
  static constexpr Constructor<Derived(std::string_view)> MakeDerived;
  static constexpr java::SuperMethod<Object, std::string()> ToString{"toString"};
  static constexpr Field<Values, Global<Object>> AnyGlobal{"objectField"};
  static constexpr Method<ArrayList, bool(Ref<Object>)> Add{"add"};
  const Local<Values> values = Make();
  const Local<ArrayList> list = java::New<ArrayList>();
  ExpectNothingWhereverItFails([] { Same("Zo\xC3\xAB"); }, 2);
  ExpectNothingWhereverItFails([] { SameNumber(1000); }, 2);
  ExpectNothingWhereverItFails([] { MakeDerived("text"); }, 2);
  ExpectNothingWhereverItFails([&] { ToString(values); }, 1);
  ExpectNothingWhereverItFails([&] { Any.Set(values, "text"), AnyGlobal.Get(values); }, 2);
  ExpectNothingWhereverItFails([&] { Add(list, std::string(5000, 'x')), java::Call<void>(list, "clear"); }, 2);
}

// With a Thread the host vouches that nothing is pending; if something is, a VM may run the call nevertheless.
TEST_F(MemberLeavesNothingTest, WhereAnExceptionIsPendingAfterACallThatReturned) {
  static constexpr Method<ArrayList, Local<Object>()> Clone{"clone"};
  static constexpr java::SuperMethod<Object, std::string()> ToString{"toString"};
  const Local<ArrayList> list = java::New<ArrayList>();
  const java::Thread thread;
  const auto expectNothing = [&](const auto& operation) {
    int thrown = 0;
    ExpectNothing([&] {
      CountedReferences::ThrowAfterNext();
      try {
        operation();
      } catch (const java::Error&) {
        ++thrown;
      }
    });
    EXPECT_EQ(thrown, 3);  // all but the first, which is not counted
  };
  expectNothing([&] { Make(thread); });
  expectNothing([&] { SameObject(thread, list); });
  expectNothing([&] { Clone(thread, list); });
  expectNothing([&] { ToString(thread, list); });
}

TEST_F(MemberLeavesNothingTest, AfterEverythingElseThatIsThere) {
  using Over = StaticMethod<std::string(std::string_view)>;
  using OverInt = StaticMethod<std::string(jint)>;
  static constexpr java::Overloads All{Over{"fixture/Members", "over"}, OverInt{"fixture/Members", "over"}};
  static constexpr java::StaticField<std::string> StaticText{"fixture/Values", "staticText"};
  static constexpr java::StaticField<Local<Object>> StaticObject{"fixture/Values", "staticObject"};
  static constexpr Constructor<Failing()> MakeFailing;
  static constexpr StaticMethod<void()> Chain{"fixture/Errors", "chain"};
  JNIEnv* const env = java::detail::Env();
  const Local<ArrayList> list = java::New<ArrayList>();
  const Global<Object> object(list);
  const torvan::jni::CJavaObject handle = java::Handle(list);
  const auto raw = [&] { return env->NewLocalRef(list.Get()); };
  const auto leavePending = [&] { env->ThrowNew(java::detail::ClassOf<java::Throwable>(env), "left pending"); };
  const auto caught = [] {
    try {
      Chain();
    } catch (const java::Error& error) {
      return error;
    }
    throw std::logic_error("nothing was thrown");
  };
  const auto wrong = "not \xFF UTF-8";

  const struct {
    const char* name;
    std::function<void()> run;
    bool throws;
  } operations[] = {
      {"Cast", [&] { java::Cast<ArrayList>(Ref<Object>(object)); }, false},
      {"Cast of a wrong one", [&] { java::Cast<Values>(Ref<Object>(object)); }, true},
      {"Cast of a wrong Local", [&] { java::Cast<Values>(Local<Object>(object)); }, true},
      {"Cast of a wrong Global", [&] { java::Cast<Values>(object); }, true},
      {"Cast to no class", [&] { java::Cast<NoSuch>(object); }, true},
      {"IsInstance", [&] { java::IsInstance<Values>(object); }, false},
      {"IsInstance of no class", [&] { java::IsInstance<NoSuch>(object); }, true},
      {"a Local of a handle", [&] { Local<ArrayList>{handle}; }, false},
      {"a Local of a wrong handle", [&] { Local<Values>{handle}; }, true},
      {"Adopt", [&] { java::Adopt<ArrayList>(raw()); }, false},
      {"Adopt of a wrong one", [&] { java::Adopt<Values>(raw()); }, true},
      {"Adopt with one pending",
       [&] {
         jobject const local = raw();
         leavePending();
         java::Adopt<ArrayList>(local);
       },
       true},
      {"Handle", [&] { java::Handle(object); }, false},
      {"LocalFrame",
       [&] {
         const java::LocalFrame frame;
         raw();
       },
       false},
      {"a LocalFrame that cannot be", [] { const java::LocalFrame frame(-1); }, true},
      {"Thread", [] { const java::Thread thread("named"); }, false},
      {"Overloads", [] { All("text"), All(5); }, false},
      {"Overloads and no UTF-8", [&] { All(wrong); }, true},
      {"a static text", [] { StaticText.Set("text"), StaticText.Get(); }, false},
      {"a static text that is null", [&] { StaticObject.Set(nullptr), StaticObject.Get(), Any.Get(Make()); }, false},
      {"a static object", [&] { StaticObject.Set(object), StaticObject.Get(); }, false},
      {"a static text and no UTF-8", [&] { StaticText.Set(wrong); }, true},
      {"a constructor that throws", [] { MakeFailing(); }, true},
      {"New of one that throws", [] { java::New<Failing>(); }, true},
      {"New of no class", [] { java::New<NoSuch>(); }, true},
      {"New and no UTF-8", [&] { java::New<Derived>("first", wrong); }, true},
      {"Call and no UTF-8", [&] { java::Call<void>(list, "add", 0, wrong); }, true},
      {"CallStatic and no UTF-8", [&] { java::CallStatic<void>("fixture/Members", "over", "text", wrong); }, true},
      {"Call on null", [] { java::Call<void>(Local<Derived>(), "shared", "text"); }, true},
      {"TakePending", [&] { leavePending(), java::TakePending(); }, false},
      {"TakePending of nothing", [] { java::TakePending(); }, false},
      {"Guard", [&] { java::Guard([&] { return java::Handle(list); }); }, false},
      {"Guard with one pending", [&] { java::Guard(leavePending); }, true},
      {"Guard of another exception",
       [&] {
         java::Guard([&] {
           leavePending();
           throw java::Misuse("test", 1, "another");
         });
       },
       true},
      {"StackTrace", [&] { caught().StackTrace(); }, false},
      {"Cause", [&] { caught().Cause()->Cause(); }, false},
      {"IsA", [&] { caught().IsA<java::Throwable>(); }, false},
      {"IsA of no class", [&] { caught().IsA<NoSuch>(); }, true},
  };
  for (const auto& operation : operations) {
    SCOPED_TRACE(operation.name);
    if (operation.throws) {
      ExpectNothingOfThrowing(operation.run);
    } else {
      ExpectNothing(operation.run);
    }
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  }
}

// A reference that the VM has made for itself is not seen by the count, but keeps the object.
TEST_F(MemberLeavesNothingTest, AfterAConstructorThatThrowsTheObjectIsGone) {
  static constexpr Constructor<Failing()> MakeFailing;
  java::CallStatic<void>("fixture/Watch", "forgetAll");
  EXPECT_THROW(MakeFailing(), java::Error);
  EXPECT_THROW(java::New<Failing>(), java::Error);
  EXPECT_EQ(java::CallStatic<jint>("fixture/Watch", "watchedCount"), 2);
  EXPECT_EQ(java::CallStatic<jint>("fixture/Watch", "alive", 0), 0);
}

// It runs once; afterwards the class cannot be used.
TEST_F(MemberLeavesNothingTest, AfterAStaticInitialiserThatThrows) {
  static constexpr java::StaticField<jint> Number{"fixture/Errors$Broken", "number"};
  java::TakePending();
  for (const char* const expected : {"java.lang.ExceptionInInitializerError", "java.lang.NoClassDefFoundError"}) {
    const CountedReferences counted(java::detail::Env());
    EXPECT_THAT(ErrorOf([] { Number.Get(); }), testing::StartsWith(expected));
    EXPECT_EQ(counted.Locals(), 0);
    EXPECT_EQ(counted.Globals(), 0);
    EXPECT_EQ(counted.Weaks(), 0);
  }
}

// As at their first use, but that the classes are known.
TEST_F(MemberLeavesNothingTest, WhereverJavaHasNoMemoryForALookUp) {
  const Local<Values> values = Make();
  const Local<java::Class> type = java::FindClass("fixture/Values");
  ExpectNothingWhereverItFails(
      [] {
        constexpr StaticMethod<std::string(std::string_view)> same{"fixture/Values", "same"};
        same("text");
      },
      3);
  ExpectNothingWhereverItFails(
      [&] {
        constexpr Field<Values, std::string> text{"textField"};
        text.Set(values, "text");
      },
      2);
  ExpectNothingWhereverItFails(
      [] {
        constexpr Constructor<Derived(std::string_view)> make;
        make("text");
      },
      3);
  ExpectNothingWhereverItFails([&] { Text.In(type).Set(values, "text"); }, 3);
  ExpectNothingWhereverItFails([] { java::CallStatic<std::string>("fixture/Members", "boxed", 5); }, 10);
  ExpectNothingWhereverItFails([] { java::New<Derived>("text"); }, 3);
  ExpectNothingWhereverItFails([] { java::FindClass("fixture/Values"); }, 2);
}

TEST_F(MemberLeavesNothingTest, AfterMembersOfOtherLoaders) {
  static constexpr Method<Object, std::string()> ToString{"toString"};
  static constexpr Method<Object, std::string()> Missing{"missing"};
  const Local<java::Class> type = java::FindClass("java/lang/Object");
  const Local<java::String> text = java::NewString("text");
  ExpectNothing([&] {
    const auto bound = ToString.In(type);
    const auto copy = bound;
    copy(text);
  });
  ExpectNothingOfThrowing([&] { Missing.In(type); });
  ExpectNothingOfThrowing([] { java::ClassLoader::System().FindClass("fixture/NoSuch"); });
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES);
  ExpectNothing([] { java::ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}).FindClass("fixture/Plugin"); });
}

}  // namespace
}  // namespace tests
