#include <gtest/gtest.h>
#include <windows.h>

#include "fakes/WideText.h"
#include "platform/TemporaryFolder.h"
#include "platform/World.h"

namespace tests {
namespace {

constexpr const wchar_t* TestKey = L"Software\\TorvanContractTest";

std::string ProgramFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::string text = Narrow(path);
  return text.substr(0, text.rfind('\\'));
}

void MakeKey(const std::string& path, HKEY* key) {
  ASSERT_EQ(0,
            RegCreateKeyExW(HKEY_LOCAL_MACHINE, Widen(path).c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key, nullptr));
}

class NativeWorld : public World {
 public:
  NativeWorld() {
    key = Narrow(TestKey);
    subKeys = {"Alpha", "Beta"};
    leafKey = "Alpha";
    valueName = "JavaHome";
    value = "C:\\Program Files\\J\xC3\xA4va";
    const auto text = Widen(value);
    HKEY opened = nullptr;
    MakeKey(key + "\\Alpha", &opened);
    RegSetValueExW(opened, L"JavaHome", 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(opened);
    MakeKey(key + "\\Beta", &opened);
    RegCloseKey(opened);

    module = ProgramFolder() + "\\platform_fixture_module.dll";
    function = "FortyTwo";
    file = m_folder.AddFile("file");
    directory = m_folder.Path();
    missing = m_folder.Path("missing");
  }
  ~NativeWorld() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, TestKey); }

  torvan::platform::System& GetSystem() override { return torvan::platform::System::Native(); }
  std::string ProcessThatExits(int code) override { return Fixture("exit " + std::to_string(code)); }
  std::string ProcessThatRuns() override { return Fixture("run"); }

 private:
  static std::string Fixture(const std::string& arguments) {
    return "\"" + ProgramFolder() + "\\platform_fixture_process.exe\" " + arguments;
  }

  TemporaryFolder m_folder;
};

}  // namespace

std::unique_ptr<World> MakeWorld() { return std::make_unique<NativeWorld>(); }

}  // namespace tests
