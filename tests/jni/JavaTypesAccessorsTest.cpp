// Every member that reads, writes or calls, held to the steps of its family.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <torvan/JavaException.h>
#include <torvan/JavaVmException.h>

#include <memory>
#include <set>
#include <utility>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/AccessorMembers.h"
#include "jni/HandleTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using testing::ElementsAre;
using testing::ElementsAreArray;
using torvan::jni::CJavaException;
using torvan::jni::CJavaVmException;

const std::string longName = "gr\xC3\xB6\xC3\x9F" + std::string(300, 'x');
const std::string longNameInLog = "gr\\c3\\b6\\c3\\9f" + std::string(300, 'x');

std::vector<Member> MembersThat(bool (*fit)(const Member&)) {
  std::vector<Member> members;
  for (const Member& member : AllMembers()) {
    if (fit(member)) members.push_back(member);
  }
  return members;
}

class JavaTypesAccessorsTest : public HandleTest, public testing::WithParamInterface<Member> {
 protected:
  JavaTypesAccessorsTest() { jvm.TakeCalls(); }

  void TearDown() override {
    m_target.reset();
    HandleTest::TearDown();
  }

  void Use(const std::string& javaName = "member", std::size_t sample = 0) { member.use(target, javaName, sample); }

  std::string Lookup(const std::string& owner, const std::string& nameInLog = "member") const {
    return std::string("Get") + (member.IsStatic() ? "Static" : "") + (member.IsMethod() ? "MethodID(" : "FieldID(") +
           owner + ", \"" + nameInLog + "\", \"" + member.signature + "\")";
  }

  // The steps up to the lookup. Each use of an instance member finds the object's class anew.
  std::vector<std::string> StepsToLookup(int classLocal = 4, const std::string& nameInLog = "member") const {
    if (member.IsStatic()) return {attach, Lookup("global:2", nameInLog)};
    return {attach, "GetObjectClass(global:1)", Lookup("local:" + std::to_string(classLocal), nameInLog)};
  }

  // All steps, up to the check for a Java exception.
  std::vector<std::string> StepsToCheck(std::size_t sample, int classLocal) const {
    std::string call = member.slot + (member.IsStatic() ? "(global:2" : "(global:1");
    if (member.IsNonvirtual()) call += ", local:" + std::to_string(classLocal);
    call += member.IsMethod() ? ", method:member" : ", field:member";
    if (!member.given[sample].empty()) call += ", " + member.given[sample];
    std::vector<std::string> steps = StepsToLookup(classLocal);
    steps.push_back(call + ")");
    steps.push_back("ExceptionOccurred");
    return steps;
  }

  const char* Tag() const { return member.IsStatic() ? "jni/JavaClass" : "jni/JavaObject"; }

  const char* NotFound() const {
    if (member.IsStatic()) {
      return member.IsMethod() ? "The specified static method was not found."
                               : "The specified static field was not found.";
    }
    return member.IsMethod() && !member.wide ? "The specified method was not found."
                                             : "The specified field was not found.";
  }

  const Member& member = GetParam();

 private:
  Target MakeTarget() {
    const Object object(vm, jvm.NewObject());
    const torvan::jni::CJavaClass javaClass = vm.FindClass("C");
    const jobject value = jvm.NewObject();
    return {jvm, object, javaClass, Object(vm, value), Object(vm, nullptr), value};
  }

  std::unique_ptr<Target> m_target = std::make_unique<Target>(MakeTarget());

 protected:
  Target& target = *m_target;
};

class JavaTypesAccessorsInstanceTest : public JavaTypesAccessorsTest {};
class JavaTypesAccessorsStaticTest : public JavaTypesAccessorsTest {};
class JavaTypesAccessorsWideTest : public JavaTypesAccessorsTest {};

std::string NameOf(const testing::TestParamInfo<Member>& info) {
  return info.param.name + (info.param.wide ? "Wide" : "Narrow");
}
bool IsAny(const Member&) { return true; }
bool IsInstance(const Member& member) { return !member.IsStatic(); }
bool IsStatic(const Member& member) { return member.IsStatic(); }
bool IsWide(const Member& member) { return member.wide; }
INSTANTIATE_TEST_SUITE_P(All, JavaTypesAccessorsTest, testing::ValuesIn(MembersThat(IsAny)), NameOf);
INSTANTIATE_TEST_SUITE_P(Instance, JavaTypesAccessorsInstanceTest, testing::ValuesIn(MembersThat(IsInstance)), NameOf);
INSTANTIATE_TEST_SUITE_P(Static, JavaTypesAccessorsStaticTest, testing::ValuesIn(MembersThat(IsStatic)), NameOf);
INSTANTIATE_TEST_SUITE_P(Wide, JavaTypesAccessorsWideTest, testing::ValuesIn(MembersThat(IsWide)), NameOf);

TEST(JavaTypesAccessorsMembersTest, AreTheSeventySixOfObjectsAndTheFiftySixOfClasses) {
  EXPECT_EQ(AllMembers().size(), 132u);
  EXPECT_EQ(MembersThat(IsInstance).size(), 76u);
  EXPECT_EQ(MembersThat(IsStatic).size(), 56u);
  std::set<std::pair<std::string, bool>> names;
  for (const Member& member : AllMembers()) names.emplace(member.name, member.wide);
  EXPECT_EQ(names.size(), 132u);
}

TEST_P(JavaTypesAccessorsTest, TakesItsStepsInOrderAndPassesEveryValueOn) {
  for (std::size_t sample = 0; sample < member.given.size(); ++sample) {
    SCOPED_TRACE(testing::Message() << "sample " << sample);
    member.script(target, sample);
    jvm.TakeCalls();

    Use("member", sample);

    std::vector<std::string> steps = StepsToCheck(sample, 4 + static_cast<int>(sample));
    if (member.givesObject && sample == 0) {
      // The result has its own global reference, which is deleted with it.
      steps.insert(steps.end(), {attach, "NewGlobalRef(local:3)", attach, "DeleteGlobalRef(global:3)"});
    }
    EXPECT_THAT(jvm.Calls(), ElementsAreArray(steps));
    EXPECT_EQ(jvm.LiveGlobals(), 3u);
  }
}

TEST_P(JavaTypesAccessorsTest, SaysWhatWasNotFoundAndLeavesTheJavaErrorPending) {
  const jthrowable error = jvm.Throw({"java.lang.Error", "none", {}});
  jvm.TakeCalls();
  const std::string classLocal = Describe(jvm.NewObject());
  const int next = std::stoi(classLocal.substr(classLocal.find(':') + 1)) + 1;
  const std::vector<std::string> steps = StepsToLookup(next);
  jvm.AnswerNull(steps.back());

  EXPECT_EQ(FailureOf([&] { Use(); }), Throws<CJavaVmException>(Tag(), AnyLine, NotFound()));

  EXPECT_THAT(jvm.Calls(), ElementsAreArray(steps));
  EXPECT_EQ(jvm.Pending(), error);
}

TEST_P(JavaTypesAccessorsTest, TurnsAJavaExceptionOfTheCallIntoACJavaException) {
  const jthrowable thrown = jvm.Throw({"java.lang.IllegalStateException", "bad", {"C.m(C.java:1)"}});
  member.script(target, 0);
  jvm.AnswerReads();  // one of its slots may be the member's own
  jvm.TakeCalls();
  std::vector<std::string> texts;

  try {
    Use();
  } catch (const CJavaException& exception) {
    for (const mirel::base::CUnicodeString& text :
         {exception.GetJavaExceptionClassName(), exception.GetJavaMessage(), exception.GetJavaStackTrace()}) {
      texts.push_back(Narrow(text));
    }
  }

  EXPECT_THAT(texts, ElementsAre("java.lang.IllegalStateException", "bad", "\tat C.m(C.java:1)"));
  EXPECT_EQ(jvm.Pending(), thrown);
  EXPECT_EQ(jvm.LiveGlobals(), 3u);
}

TEST_P(JavaTypesAccessorsTest, DoesNothingInAThreadThatCannotBeAttached) {
  jvm.Return<&Invocation::AttachCurrentThread>(JNI_ERR);
  jvm.TakeCalls();
  Allocations allocations;

  EXPECT_EQ(FailureOf([&] { Use(longName); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed ot attach the current thread to the underlying Java VM."));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach));
  EXPECT_EQ(allocations.Made(), 0);
  jvm.AnswerAttachment();
}

TEST_P(JavaTypesAccessorsTest, TakesMemoryForNothingButAnObjectThatItReturns) {
  member.script(target, 0);
  Allocations allocations;

  Use();

  EXPECT_EQ(allocations.Made(), member.givesObject ? 2 : 0);
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_P(JavaTypesAccessorsTest, KeepsNothingWhenMemoryRunsOut) {
  member.script(target, 0);
  Failure failure;

  const int runs = FailEachAllocation([&] { failure = FailureOf([&] { Use(longName); }); },
                                      [&](int, const Allocations& allocations) {
                                        EXPECT_EQ(failure.type, typeid(CMemoryException));
                                        EXPECT_EQ(allocations.Live(), 0u);
                                        EXPECT_EQ(jvm.LiveGlobals(), 3u);
                                      });

  EXPECT_EQ(failure, Failure());
  const int blocksOfTheResult = member.givesObject ? 2 : 0;
  if (member.wide) {
    EXPECT_GT(runs, blocksOfTheResult);
  } else {
    EXPECT_EQ(runs, blocksOfTheResult);
  }
}

TEST_P(JavaTypesAccessorsInstanceTest, RefusesANullObjectWithoutAskingTheVm) {
  target.object = target.nothing;
  jvm.TakeCalls();
  Allocations allocations;

  EXPECT_EQ(FailureOf([&] { Use(longName); }),
            Throws<mirel::base::CNullReferenceException>("jni/JavaObject", AnyLine, nullptr));

  EXPECT_THAT(jvm.Calls(), ElementsAre());
  EXPECT_EQ(allocations.Made(), 0);
}

TEST_P(JavaTypesAccessorsInstanceTest, SaysThatTheObjectHasNoClass) {
  jvm.AnswerNull("GetObjectClass(global:1)");
  jvm.TakeCalls();
  Allocations allocations;

  EXPECT_EQ(FailureOf([&] { Use(longName); }),
            Throws<CJavaVmException>("jni/JavaObject", AnyLine, "Failed to get the class of the object."));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "GetObjectClass(global:1)"));
  EXPECT_EQ(allocations.Made(), 0);
}

TEST_P(JavaTypesAccessorsStaticTest, PassesANullClassToTheVm) {
  MakeNull(target.javaClass, vm);
  jvm.AnswerNull(Lookup("null"));
  jvm.TakeCalls();

  EXPECT_EQ(FailureOf([&] { Use(); }), Throws<CJavaVmException>("jni/JavaClass", AnyLine, NotFound()));

  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, Lookup("null")));
}

TEST_P(JavaTypesAccessorsWideTest, ConvertsNamesOfAnyLengthToUtf8) {
  const std::vector<std::string> steps = StepsToLookup(4, longNameInLog);
  jvm.AnswerNull(steps.back());
  jvm.TakeCalls();

  EXPECT_EQ(FailureOf([&] { Use(longName); }), Throws<CJavaVmException>(Tag(), AnyLine, NotFound()));

  EXPECT_THAT(jvm.Calls(), ElementsAreArray(steps));
}

TEST_P(JavaTypesAccessorsWideTest, ConvertsNamesOnlyRightBeforeTheLookup) {
  jvm.TakeCalls();
  Allocations allocations;
  allocations.Fail(1);

  EXPECT_EQ(FailureOf([&] { Use(longName); }).type, typeid(CMemoryException));

  std::vector<std::string> stepsBefore = StepsToLookup();
  stepsBefore.pop_back();
  EXPECT_THAT(jvm.Calls(), ElementsAreArray(stepsBefore));
}

}  // namespace
}  // namespace tests
