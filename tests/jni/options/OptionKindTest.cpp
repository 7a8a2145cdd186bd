// What all kinds of options have in common, and how they differ.
#include <mirel/base/MemoryException.h>
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/LibraryPath.h>
#include <torvan/jni/options/Verbose.h>
#include <torvan/jni/options/VfprintfHook.h>

#include <memory>
#include <ostream>
#include <typeinfo>

#include "fakes/Allocations.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CClass;
using mirel::base::CObject;

// One function cast to the types of all hooks, so that only the class distinguishes them.
void* const Shared = reinterpret_cast<void*>(OnAbort);
const auto SharedExit = reinterpret_cast<void (*)(int)>(Shared);
const auto SharedPrint = reinterpret_cast<int (*)(FILE*, const char*, va_list)>(Shared);

template <typename List>
COption* MakeList(std::initializer_list<const RX::UniChar*> paths) {
  auto list = std::make_unique<List>();
  for (const RX::UniChar* path : paths) list->AddPath(path);
  return list.release();
}

struct Kind {
  const char* name;
  COption* (*make)();
  const CClass* type;
  std::string text;
  void* extraInfo;
};
void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const RX::UniChar* const A = RX_TEXT("a");
const RX::UniChar* const B = RX_TEXT("b");
void* const ExitPointer = reinterpret_cast<void*>(OnExit);
void* const PrintPointer = reinterpret_cast<void*>(OnPrint);
const std::string Colon = ListSeparator;

// No row equals another; neighbours differ in one thing only.
// clang-format off
const Kind Kinds[] = {
    {"Custom",             [] { return static_cast<COption*>(new CCustomOption(RX_TEXT("abort"))); },
                           &CCustomOption::m_classCCustomOption, "abort", nullptr},
    {"CustomVerbose",      [] { return static_cast<COption*>(new CCustomOption(RX_TEXT("-verbose:gc"))); },
                           &CCustomOption::m_classCCustomOption, "-verbose:gc", nullptr},
    {"Verbose",            [] { return static_cast<COption*>(new CVerbose(2)); },
                           &CVerbose::m_classCVerbose, "-verbose:gc", nullptr},
    {"VerboseAndUnknown",  [] { return static_cast<COption*>(new CVerbose(6)); },
                           &CVerbose::m_classCVerbose, "-verbose:gc", nullptr},
    {"AbortHook",          [] { return static_cast<COption*>(new CAbortHook(OnAbort)); },
                           &CAbortHook::m_classCAbortHook, "abort", Shared},
    {"SharedExitHook",     [] { return static_cast<COption*>(new CExitHook(SharedExit)); },
                           &CExitHook::m_classCExitHook, "exit", Shared},
    {"ExitHook",           [] { return static_cast<COption*>(new CExitHook(OnExit)); },
                           &CExitHook::m_classCExitHook, "exit", ExitPointer},
    {"SharedVfprintfHook", [] { return static_cast<COption*>(new CVfprintfHook(SharedPrint)); },
                           &CVfprintfHook::m_classCVfprintfHook, "vfprintf", Shared},
    {"VfprintfHook",       [] { return static_cast<COption*>(new CVfprintfHook(OnPrint)); },
                           &CVfprintfHook::m_classCVfprintfHook, "vfprintf", PrintPointer},
    {"SystemProperty",     [] { return static_cast<COption*>(new CSystemProperty(CSystemProperty::ClassPath, A)); },
                           &CSystemProperty::m_classCSystemProperty, "-Djava.class.path=a", nullptr},
    {"OtherValue",         [] { return static_cast<COption*>(new CSystemProperty(CSystemProperty::ClassPath, B)); },
                           &CSystemProperty::m_classCSystemProperty, "-Djava.class.path=b", nullptr},
    {"OtherName",          [] { return static_cast<COption*>(new CSystemProperty(CSystemProperty::LibraryPath, B)); },
                           &CSystemProperty::m_classCSystemProperty, "-Djava.library.path=b", nullptr},
    {"EmptyClassPath",     [] { return MakeList<CClassPath>({}); },
                           &CClassPath::m_classCClassPath, "", nullptr},
    {"EmptyLibraryPath",   [] { return MakeList<CLibraryPath>({}); },
                           &CLibraryPath::m_classCLibraryPath, "", nullptr},
    {"LibraryPath",        [] { return MakeList<CLibraryPath>({A, B}); },
                           &CLibraryPath::m_classCLibraryPath, "-Djava.library.path=a" + Colon + "b" + Colon, nullptr},
    {"ClassPath",          [] { return MakeList<CClassPath>({A, B}); },
                           &CClassPath::m_classCClassPath, "-Djava.class.path=a" + Colon + "b" + Colon, nullptr},
    {"OtherOrder",         [] { return MakeList<CClassPath>({B, A}); },
                           &CClassPath::m_classCClassPath, "-Djava.class.path=b" + Colon + "a" + Colon, nullptr},
};
// clang-format on

class OptionKindTest : public ::testing::TestWithParam<Kind> {
 protected:
  static std::unique_ptr<COption> Make(const Kind& kind) { return std::unique_ptr<COption>(kind.make()); }

  const std::unique_ptr<COption> m_option = Make(GetParam());
};

TEST_P(OptionKindTest, HasItsRecordTextAndExtraInformation) {
  EXPECT_EQ(m_option->GetClass(), GetParam().type);
  EXPECT_EQ(Text(m_option->GetOptionString()), GetParam().text);
  EXPECT_EQ(m_option->GetExtraInfo(), GetParam().extraInfo);
}

TEST_P(OptionKindTest, RecordTellsTheSizeOfTheObject) {
  Allocations allocations;
  const std::unique_ptr<CObject> clone(m_option->Clone());
  EXPECT_EQ(allocations.Taken()[0].address, clone.get());
  EXPECT_EQ(allocations.Taken()[0].size, m_option->GetClass()->GetInstanceSize());
}

TEST_P(OptionKindTest, KeepsTheHashOfItsAddress) {
  EXPECT_EQ(m_option->GetHashCode(), m_option->CObject::GetHashCode());
}

TEST_P(OptionKindTest, CloneIsAnEqualObjectOfTheSameClass) {
  const std::unique_ptr<CObject> clone(m_option->Clone());
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone.get(), m_option.get());
  const CObject& copy = *clone;
  const CObject& original = *m_option;
  EXPECT_EQ(typeid(copy), typeid(original));
  EXPECT_EQ(clone->GetClass(), GetParam().type);
  EXPECT_TRUE(clone->Equals(m_option.get()));
  EXPECT_TRUE(m_option->Equals(clone.get()));
  const auto& option = static_cast<const COption&>(*clone);
  EXPECT_EQ(Text(option.GetOptionString()), GetParam().text);
  EXPECT_EQ(option.GetExtraInfo(), GetParam().extraInfo);
}

TEST_P(OptionKindTest, EqualsOneMadeAlikeAndNoOther) {
  for (const Kind& kind : Kinds) {
    SCOPED_TRACE(kind.name);
    const std::unique_ptr<COption> other = Make(kind);
    const bool alike = std::string(kind.name) == GetParam().name;
    EXPECT_EQ(m_option->Equals(other.get()), alike);
    EXPECT_EQ(other->Equals(m_option.get()), alike);
  }
}

TEST_P(OptionKindTest, EqualsNeitherNullNorAnObjectThatIsNoOption) {
  class CStranger : public CObject {
  } stranger;
  EXPECT_FALSE(m_option->Equals(nullptr));
  EXPECT_FALSE(m_option->Equals(&stranger));
}

// Runs an operation with each of its allocations failing; it must throw CMemoryException and leak nothing.
template <typename Operation>
int ExpectMemoryExceptions(Operation operation) {
  bool hasThrown = false;
  return FailEachAllocation(
      [&] {
        hasThrown = false;
        try {
          operation();
        } catch (const mirel::base::CMemoryException&) {
          hasThrown = true;
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_TRUE(hasThrown);
        EXPECT_EQ(allocations.Live(), 0u);
      });
}

TEST_P(OptionKindTest, ConstructionWithoutMemoryLeavesNothingBehind) {
  EXPECT_GE(ExpectMemoryExceptions([] { delete GetParam().make(); }), 1);
}

TEST_P(OptionKindTest, CloningWithoutMemoryLeavesNothingBehind) {
  EXPECT_GE(ExpectMemoryExceptions([this] { delete m_option->Clone(); }), 1);
}

TEST_P(OptionKindTest, RenderingWithoutMemoryLeavesNothingBehind) {
  EXPECT_GE(ExpectMemoryExceptions([this] { m_option->GetOptionString(); }), 1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, OptionKindTest, ::testing::ValuesIn(Kinds),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace tests
