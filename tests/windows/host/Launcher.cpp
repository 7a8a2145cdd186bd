// The launcher: options, arguments, and a program that runs.
#include <windows.h>

#include "Check.h"

using namespace torvan::jvmlauncher;
using mirel::base::CIllegalArgumentException;
using mirel::base::CRef;
using mirel::base::CUnicodeString;

namespace {

using host::IsCaughtAs;
using host::Same;

// An option of the host's own fills the last two slots.
class HostOption : public CJavaVmOption {
 public:
  HostOption() = default;
  const mirel::base::CClass* GetClass() const override { return &CJavaVmOption::m_classCJavaVmOption; }
  bool Equals(const mirel::base::CObject* other) const override { return other != nullptr; }
  mirel::base::CObject* Clone() const override { return new HostOption(*this); }

 protected:
  CUnicodeString RenderCommandLine() const override { return L"exit"; }
  unsigned int ToArgumentList(CArgumentList& list) const override {
    list.Append(L"exit");
    return 1;
  }
};

void CheckOptionsAndArguments() {
  CJavaVmOptions options;
  options::CClassPathOption path;
  path.AddEntry(L"a b");
  path.AddEntry(Place::Location(L"c"));
  CHECK(path.GetEntryCount() == 2);
  CHECK(Same(path.GetEntryAt(1), L"c"));
  options.AddOption(path);
  options.AddOption(options::CJarOption(L"x.jar"));
  options.AddOption(options::CNonStandardOption(L"mx1g"));
  options.AddOption(options::CDirectOption(L"-ea"));
  options.AddOption(options::CSystemPropertyOption(L"n", L"v"));
  CHECK(options.GetOptionCount() == 5);
  CHECK(options.GetOptionAt(0).Equals(&path));
  CHECK(Same(static_cast<const options::CJarOption&>(options.GetOptionAt(1)).GetJarFilePath(), L"x.jar"));
  CHECK(Same(static_cast<const options::CNonStandardOption&>(options.GetOptionAt(2)).GetOption(), L"mx1g"));
  CHECK(Same(static_cast<const options::CDirectOption&>(options.GetOptionAt(3)).GetOption(), L"-ea"));
  const auto& property = static_cast<const options::CSystemPropertyOption&>(options.GetOptionAt(4));
  CHECK(Same(property.GetPropertyName(), L"n") && Same(property.GetPropertyValue(), L"v"));
  options.RemoveOption(path);
  const CJavaVmOptions copy(options);
  CHECK(copy.GetOptionCount() == 4);

  CArgumentList list;
  list.Append(L"one");
  CArgumentList both;
  both.Append(list);
  both.Append(Place::Location(L"two"));
  CHECK(both.GetArgumentCount() == 2);
  CHECK(Same(both.GetArgumentAt(1), L"two"));
}

// Registers the folder beside this program, which has a runtime's programs, as the runtime of version 99, in a registry
// of this process's own.
class Installation {
 public:
  Installation() {
    RegCreateKeyExW(HKEY_CURRENT_USER, OwnKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_machine, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_machine);
    wchar_t home[MAX_PATH];
    GetModuleFileNameW(nullptr, home, MAX_PATH);
    *wcsrchr(home, L'\\') = 0;
    wcscat(home, L"\\windows_host_java");
    Set(L"JavaHome", home);
    Set(L"RuntimeLib", wcscat(home, L"\\jvm.dll"));
  }
  ~Installation() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(m_machine);
    RegDeleteTreeW(HKEY_CURRENT_USER, OwnKey);
  }

 private:
  static constexpr const wchar_t* OwnKey = L"Software\\TorvanHostTest";

  static void Set(const wchar_t* name, const wchar_t* value) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"Software\\JavaSoft\\Java Runtime Environment\\99", name, REG_SZ, value,
                    static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
  }

  HKEY m_machine = nullptr;
};

void CheckProcess() {
  const Installation installation;
  CJavaVmLauncher launcher(L"99");
  CJavaVmOptions options;
  options.AddOption(HostOption());
  const CRef<CJavaVmProcess> ended = launcher.Launch(options, L"42", CArgumentList());
  ended->Wait();
  CHECK(ended->GetExitCode() == 42);

  const CRef<CJavaVmProcess> running = launcher.Launch(CJavaVmOptions(), L"run", CArgumentList());
  CHECK(!running->Wait(0));
  CHECK(IsCaughtAs<CIllegalArgumentException>([&] { running->GetExitCode(); }));
  running->Stop();
  running->Kill();
  CHECK(running->Wait(10000));
}

}  // namespace

void host::CheckLauncher() {
  CheckOptionsAndArguments();
  CheckProcess();
}
