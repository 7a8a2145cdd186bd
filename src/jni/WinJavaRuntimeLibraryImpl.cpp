#include "jni/WinJavaRuntimeLibraryImpl.h"

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <torvan/JavaRuntimeException.h>

#include <utility>

#include "EmptyText.h"
#include "platform/Conventions.h"

namespace torvan::jni {

using mirel::base::At;
using mirel::base::CUnicodeString;
using mirel::base::win::CWinSystemErrorException;
using platform::System;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw CJavaRuntimeException("jni/WinJavaRuntimeLibraryImpl", line, text, nullptr);
}
[[noreturn]] void FailInSystem(unsigned int line, const char* text, platform::Status status) {
  throw CWinSystemErrorException("jni/WinJavaRuntimeLibraryImpl", line, text, nullptr,
                                 static_cast<unsigned int>(status));
}
[[noreturn]] void Refuse(unsigned int line, const char* text) {
  throw mirel::base::CIllegalArgumentException("jni/WinJavaRuntimeLibraryImpl", line, text, nullptr);
}

struct Failure {
  At line;
  const char* text;
};

// How the library of one VM type is found. The platform's constants are held by address, so that the table is
// initialised at compile time.
struct Location {
  CDynamicJavaRuntime::VmType type;
  const RX::UniChar* requiredVersion;  // must occur in the version; null accepts every version
  const RX::UniChar* key;              // the version follows
  const RX::UniChar* value;
  const RX::UniChar* const* suffix;  // appended to the value read; null for none
  Failure wrongVersion;
  Failure notFound;
};

constexpr const RX::UniChar* RuntimeKey = RX_TEXT("Software\\JavaSoft\\Java Runtime Environment\\");
constexpr const RX::UniChar* KitKey = RX_TEXT("Software\\JavaSoft\\Java Development Kit\\");

// Intentional: the classic VM is only found in 1.3 runtimes, client and server VM only in 1.4; a newer runtime is found
// by its registered library.
// clang-format off
constexpr Location Locations[] = {
    {CDynamicJavaRuntime::Default, nullptr, RuntimeKey, RX_TEXT("RuntimeLib"), nullptr,
     {At(0),   nullptr},
     {At(223), "The specified Sun JRE version is not found."}},
    {CDynamicJavaRuntime::Classic, RX_TEXT("1.3"), RuntimeKey, RX_TEXT("JavaHome"), &platform::ClassicLibrary,
     {At(231), "Invalid Classic Sun JRE version."},
     {At(238), "The specified Classic Sun JRE version is not found."}},
    {CDynamicJavaRuntime::Client,  RX_TEXT("1.4"), RuntimeKey, RX_TEXT("JavaHome"), &platform::ClientLibrary,
     {At(246), "Invalid Client Sun JRE version."},
     {At(253), "The specified Client Sun JRE version is not found."}},
    {CDynamicJavaRuntime::Server,  RX_TEXT("1.4"), KitKey,     RX_TEXT("JavaHome"), &platform::ServerLibrary,
     {At(261), "Invalid Server Sun JRE version."},
     {At(268), "The specified Server Sun JRE version is not found."}},
};
// clang-format on

const Location& LocationOf(CDynamicJavaRuntime::VmType type) {
  for (const Location& location : Locations) {
    if (location.type == type) return location;
  }
  Fail(At(275), "Unknown Java Runtime type.");
}

// Reads a text up to its first zero; whatever the value's type, its bytes are taken for text.
CUnicodeString ReadRegistryString(platform::RegistryKey root, const RX::UniChar* subKey, const RX::UniChar* valueName) {
  System& system = System::Current();
  platform::RegistryKey key = nullptr;
  platform::Status status = system.OpenKey(root, subKey, platform::KeyRead, &key);
  if (status != platform::StatusOk) {
    FailInSystem(At(40), "Failed to open the specified subkey.", status);
  }

  RX::UniChar buffer[2080];
  // Intentional: passes the number of units as the number of bytes, so a text of more than 1040 units is refused.
  unsigned int size = 2080;
  status = system.QueryValue(key, valueName, buffer, &size);
  if (status != platform::StatusOk) {
    // Intentional: the key stays open.
    FailInSystem(At(47), "Failed to query the specified value.", status);
  }
  system.CloseKey(key);
  // A stored text need not end with a zero, nor with a whole unit.
  buffer[size / sizeof(RX::UniChar)] = 0;
  return CUnicodeString(buffer);
}

// Reads a text below HKEY_LOCAL_MACHINE. The registry's own failure is only printed; `notFound` is thrown in its place.
CUnicodeString ReadInstallation(const RX::UniChar* subKey, const RX::UniChar* valueName, const Failure& notFound) {
  try {
    return ReadRegistryString(System::Current().LocalMachine(), subKey, valueName);
  } catch (const CWinSystemErrorException& exception) {
    PrintToDebugOut(exception);
    Fail(notFound.line, notFound.text);
  }
}

CUnicodeString CurrentVersion() {
  return ReadInstallation(RX_TEXT("Software\\JavaSoft\\Java Runtime Environment"), RX_TEXT("CurrentVersion"),
                          {At(206), "There is not any Sun JRE installed in the current system."});
}

CUnicodeString FindLibrary(CDynamicJavaRuntime::VmVendor vendor, CDynamicJavaRuntime::VmType type,
                           const RX::UniChar* requestedVersion) {
  if (vendor != CDynamicJavaRuntime::Sun) Fail(At(283), "Unknown Java Runtime vendor.");
  const bool current = IsEmpty(requestedVersion);
  const CUnicodeString version = current ? CurrentVersion() : CUnicodeString(requestedVersion);

  const Location& location = LocationOf(type);
  if (location.requiredVersion != nullptr && version.Find(location.requiredVersion) < 0) {
    const auto& [line, text] = location.wrongVersion;
    Fail(line, text);
  }
  const CUnicodeString value = ReadInstallation(location.key + version, location.value, location.notFound);
  return location.suffix == nullptr ? value : value + *location.suffix;
}

}  // namespace

CWinJavaRuntimeLibraryImpl::CWinJavaRuntimeLibraryImpl(const RX::UniChar* path) : CJavaRuntimeLibraryImpl(path) {
  if (IsEmpty(path)) Refuse(At(88), "Invalid Java Runtime path.");
}

CWinJavaRuntimeLibraryImpl::CWinJavaRuntimeLibraryImpl(CDynamicJavaRuntime::VmVendor vendor,
                                                       CDynamicJavaRuntime::VmType type, const RX::UniChar* version)
    : CJavaRuntimeLibraryImpl(FindLibrary(vendor, type, version)) {}

CWinJavaRuntimeLibraryImpl::~CWinJavaRuntimeLibraryImpl() { CWinJavaRuntimeLibraryImpl::Unload(); }

void CWinJavaRuntimeLibraryImpl::Load() {
  if (m_module != nullptr) return;
  const RX::UniChar* path = GetPath();
  if (IsEmpty(path)) Fail(At(132), "Java Runtime library not found.");
  System& system = System::Current();
  m_module = system.LoadModule(path);
  if (m_module == nullptr) Fail(At(135), "Java Runtime library not found.");
  // Intentional: a library without an entry point stays loaded, and a second Load() accepts it.
  m_createJavaVm = reinterpret_cast<CreateJavaVmFunction>(system.FindSymbol(m_module, "JNI_CreateJavaVM"));
  if (m_createJavaVm == nullptr) Fail(At(138), "Invalid Java Runtime libray.");  // sic
  m_getCreatedJavaVms =
      reinterpret_cast<GetCreatedJavaVmsFunction>(system.FindSymbol(m_module, "JNI_GetCreatedJavaVMs"));
  if (m_getCreatedJavaVms == nullptr) Fail(At(140), "Invalid Java Runtime libray.");  // sic
}

void CWinJavaRuntimeLibraryImpl::Unload() {
  if (m_module == nullptr) return;
  System::Current().UnloadModule(std::exchange(m_module, nullptr));
  m_createJavaVm = nullptr;
  m_getCreatedJavaVms = nullptr;
}

jint CWinJavaRuntimeLibraryImpl::CreateJavaVm(JavaVM** vm, void** env, void* initArgs) {
  if (m_createJavaVm == nullptr) Fail(At(166), "Invalid Java Runtime library.");
  return m_createJavaVm(vm, env, initArgs);
}

jint CWinJavaRuntimeLibraryImpl::GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) {
  if (m_getCreatedJavaVms == nullptr) Fail(At(178), "Inavalid Java Runtime library.");  // sic
  return m_getCreatedJavaVms(buffer, bufferLength, count);
}

}  // namespace torvan::jni
