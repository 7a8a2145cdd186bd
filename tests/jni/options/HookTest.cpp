#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/VfprintfHook.h>

#include "fakes/Failure.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;

void OnOtherAbort() {}
void OnOtherExit(int) {}
int OnOtherPrint(FILE*, const char*, va_list) { return 0; }

class CNamedHook : public CHook {
 public:
  explicit CNamedHook(const RX::UniChar* name) : CHook(name) {}
  void* GetExtraInfo() const override { return nullptr; }
};

// Writes another hook's name into a hook and leaves its function.
void Rename(CHook& hook, const CHook& other) { hook = other; }

TEST(HookTest, NamesAreThoseThatJniKnows) {
  EXPECT_EQ(Narrow(CAbortHook::HookName), "abort");
  EXPECT_EQ(Narrow(CExitHook::HookName), "exit");
  EXPECT_EQ(Narrow(CVfprintfHook::HookName), "vfprintf");
}

TEST(HookTest, NeedsAName) {
  const auto invalid = Throws<CIllegalArgumentException>("jni/options/Hook", 41, "Invalid hook name.");
  EXPECT_EQ(FailureOf([] { CNamedHook hook(nullptr); }), invalid);
  EXPECT_EQ(FailureOf([] { CNamedHook hook(RX_TEXT("")); }), invalid);
}

TEST(HookTest, BaseRendersItsNameAndBringsNeitherEqualityNorClone) {
  const CNamedHook hook(RX_TEXT("n\u00E4me"));
  const CNamedHook other(RX_TEXT("n\u00E4me"));
  EXPECT_EQ(hook.GetClass(), &CHook::m_classCHook);
  EXPECT_EQ(Text(hook.GetHookName()), "n\xC3\xA4me");
  EXPECT_EQ(Text(hook.GetOptionString()), "n\xC3\xA4me");
  EXPECT_TRUE(hook.Equals(&hook));
  EXPECT_FALSE(hook.Equals(&other));
  EXPECT_EQ(hook.Clone(), nullptr);
}

TEST(HookTest, TextIsTheNameAndExtraInformationTheFunction) {
  const CAbortHook abortHook(OnAbort);
  EXPECT_EQ(Text(abortHook.GetHookName()), "abort");
  EXPECT_EQ(Text(abortHook.GetOptionString()), "abort");
  EXPECT_EQ(abortHook.GetExtraInfo(), reinterpret_cast<void*>(OnAbort));

  const CExitHook exitHook(OnExit);
  EXPECT_EQ(Text(exitHook.GetHookName()), "exit");
  EXPECT_EQ(Text(exitHook.GetOptionString()), "exit");
  EXPECT_EQ(exitHook.GetExtraInfo(), reinterpret_cast<void*>(OnExit));

  const CVfprintfHook printHook(OnPrint);
  EXPECT_EQ(Text(printHook.GetHookName()), "vfprintf");
  EXPECT_EQ(Text(printHook.GetOptionString()), "vfprintf");
  EXPECT_EQ(printHook.GetExtraInfo(), reinterpret_cast<void*>(OnPrint));
}

TEST(HookTest, NeedsAFunction) {
  EXPECT_EQ(FailureOf([] { CAbortHook hook(nullptr); }),
            Throws<CIllegalArgumentException>("jni/options/Hook", 95, "Invalid abort hook."));
  EXPECT_EQ(FailureOf([] { CExitHook hook(nullptr); }),
            Throws<CIllegalArgumentException>("jni/options/Hook", 174, "Invalid exit hook."));
  EXPECT_EQ(FailureOf([] { CVfprintfHook hook(nullptr); }),
            Throws<CIllegalArgumentException>("jni/options/Hook", 253, "Invalid vfprintf hook."));
}

TEST(HookAbortTest, EqualsOneWithTheSameFunction) {
  const CAbortHook hook(OnAbort);
  const CAbortHook equal(OnAbort);
  const CAbortHook other(OnOtherAbort);
  EXPECT_TRUE(hook.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&hook));
  EXPECT_FALSE(hook.Equals(&other));
}

TEST(HookAbortTest, DoesNotCompareNames) {
  const CAbortHook hook(OnAbort);
  CAbortHook renamed(OnAbort);
  Rename(renamed, CExitHook(OnExit));
  ASSERT_EQ(Text(renamed.GetOptionString()), "exit");
  EXPECT_TRUE(hook.Equals(&renamed));
  EXPECT_TRUE(renamed.Equals(&hook));
}

TEST(HookExitTest, EqualsOneWithTheSameNameAndFunction) {
  const CExitHook hook(OnExit);
  const CExitHook equal(OnExit);
  const CExitHook other(OnOtherExit);
  EXPECT_TRUE(hook.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&hook));
  EXPECT_FALSE(hook.Equals(&other));

  CExitHook renamed(OnExit);
  Rename(renamed, CAbortHook(OnAbort));
  EXPECT_FALSE(hook.Equals(&renamed));
  EXPECT_FALSE(renamed.Equals(&hook));
}

TEST(HookVfprintfTest, EqualsOneWithTheSameNameAndFunction) {
  const CVfprintfHook hook(OnPrint);
  const CVfprintfHook equal(OnPrint);
  const CVfprintfHook other(OnOtherPrint);
  EXPECT_TRUE(hook.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&hook));
  EXPECT_FALSE(hook.Equals(&other));

  CVfprintfHook renamed(OnPrint);
  Rename(renamed, CAbortHook(OnAbort));
  EXPECT_FALSE(hook.Equals(&renamed));
  EXPECT_FALSE(renamed.Equals(&hook));
}

TEST(HookTest, CopiesAsAValue) {
  ExpectCopiesAsAValue(CAbortHook(OnAbort), CAbortHook(OnOtherAbort));
  ExpectCopiesAsAValue(CExitHook(OnExit), CExitHook(OnOtherExit));
  ExpectCopiesAsAValue(CVfprintfHook(OnPrint), CVfprintfHook(OnOtherPrint));
}

TEST(HookTest, AssignmentBringsTheNameToo) {
  CAbortHook hook(OnAbort);
  Rename(hook, CExitHook(OnExit));
  hook = CAbortHook(OnOtherAbort);
  EXPECT_EQ(Text(hook.GetHookName()), "abort");
}

}  // namespace
}  // namespace tests
