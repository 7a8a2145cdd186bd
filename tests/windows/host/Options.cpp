// The start options of a VM in this process, and an option of the host's own.
#include "Check.h"

using namespace torvan::jni::options;
using mirel::base::CUnicodeString;

namespace {

using host::Same;

void Abort() {}
void Exit(int) {}
int Print(FILE*, const char*, va_list) { return 0; }

// A class that overrides every slot that an option fills.
class HostOption : public COption {
 public:
  const mirel::base::CClass* GetClass() const override { return &COption::m_classCOption; }
  bool Equals(const mirel::base::CObject* other) const override { return other != nullptr; }
  mirel::base::CObject* Clone() const override { return new HostOption(*this); }
  CUnicodeString GetOptionString() const override { return L"-host"; }
  void* GetExtraInfo() const override { return const_cast<HostOption*>(this); }
};

void CheckEach() {
  CHECK(Same(CCustomOption(L"-Xmx64m").GetOptionString(), L"-Xmx64m"));
  CHECK(Same(CVerbose(3).GetOptionString(), L"-verbose:class,gc,jni"));
  CHECK(CVerbose(3).GetFlags() == 3);
  CHECK(Same(CSystemProperty(CSystemProperty::UserDir, L"here").GetOptionString(), L"-Duser.dir=here"));
  CHECK(Same(CAbortHook(&Abort).GetOptionString(), L"abort"));
  CHECK(CAbortHook(&Abort).GetExtraInfo() == reinterpret_cast<void*>(&Abort));
  CHECK(CExitHook(&Exit).GetExtraInfo() == reinterpret_cast<void*>(&Exit));
  CHECK(CVfprintfHook(&Print).GetExtraInfo() == reinterpret_cast<void*>(&Print));
  CHECK(Same(CVfprintfHook::HookName, L"vfprintf"));

  CClassPath path;
  path.AddPath(L"a.jar");
  path.AddPath(L"b");
  CHECK(path.GetPathCount() == 2);
  CHECK(Same(path.GetPathAt(1), L"b"));
  CHECK(Same(path.GetOptionString(), L"-Djava.class.path=a.jar;b;"));
  CHECK(Same(CLibraryPath().GetName(), L"java.library.path"));

  mirel::base::CObject* const clone = path.Clone();
  CHECK(clone->Equals(&path));
  CHECK(clone->GetClass() == &CClassPath::m_classCClassPath);
  CHECK(dynamic_cast<CPathList*>(clone) != nullptr);
  CHECK(dynamic_cast<CVerbose*>(clone) == nullptr);
  delete clone;
}

void CheckSet() {
  COptions options;
  options.AddOption(CCustomOption(L"-Xint"));
  options.AddOption(HostOption());
  options.AddOption(CSystemProperty(L"n", L"\x4e2d"));
  CHECK(options.GetOptionCount() == 3);
  JavaVMOption* const records = options.CreateJniOptions();
  CHECK(Same(records[0].optionString, "-Xint") && records[0].extraInfo == nullptr);
  CHECK(Same(records[1].optionString, "-host") && records[1].extraInfo == &options.GetOptionAt(1));
  CHECK(Same(records[2].optionString, "-Dn=\xE4\xB8\xAD"));
  options.DestroyJniOptions(records);
  options.RemoveOption(CCustomOption(L"-Xint"));
  CHECK(options.GetOptionCount() == 2);
  const COptions copy(options);
  CHECK(copy.GetOptionCount() == 2);
}

// Counts the blocks that are allocated and not freed.
int s_blocks = 0;
RX::Allocator s_inner;
void* CountTaken(std::size_t size) {
  ++s_blocks;
  return s_inner.allocate(size);
}
void CountGivenBack(void* block) {
  --s_blocks;
  s_inner.release(block);
}

// What Visual Studio makes of `delete[] first`: the destructor's slot is called once for the whole array.
void DeleteBySlot(COption* first) {
  using Destructor = void* (*)(COption*, unsigned int flags);
  constexpr unsigned int FreeTheBlock = 1;
  constexpr unsigned int DestroyAnArray = 2;
  (**reinterpret_cast<Destructor**>(first))(first, FreeTheBlock | DestroyAnArray);
}

// Every element of an array is destroyed, though the class and its table are the library's.
template <class Delete>
bool DestroysAll(Delete deleteArray) {
  s_inner = RX::ReplaceAllocator({CountTaken, CountGivenBack});
  CClassPath* const paths = new CClassPath[3];
  for (int i = 0; i < 3; ++i) paths[i].AddPath(L"a.jar");
  const int taken = s_blocks;
  deleteArray(paths);
  RX::ReplaceAllocator(s_inner);
  return taken > 3 && s_blocks == 0;
}

void CheckArrays() {
  CHECK(DestroysAll([](CClassPath* array) { delete[] array; }));
  CHECK(DestroysAll(DeleteBySlot));
}

}  // namespace

void host::CheckOptions() {
  CheckEach();
  CheckSet();
  CheckArrays();
}
