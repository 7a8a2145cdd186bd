#include "jvmlauncher/InstalledJavaVm.h"

#include <mirel/base/At.h>
#include <mirel/base/IllegalArgumentException.h>

#include "EmptyText.h"
#include "platform/Conventions.h"
#include "platform/System.h"

namespace torvan::jvmlauncher {

using mirel::base::At;
using mirel::base::CUnicodeString;
using namespace platform;

namespace {

[[noreturn]] void Fail(unsigned int line, const char* text) {
  throw mirel::base::CIllegalArgumentException("jvmlauncher/InstalledJavaVm", line, text, nullptr);
}

// The registry view of 64-bit programs, then that of 32-bit ones.
const RX::UniChar* const Sources[] = {
    RX_TEXT("Software\\JavaSoft\\Java Runtime Environment"),
    RX_TEXT("Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment"),
};

constexpr unsigned int ValueBytes = 1024;
constexpr unsigned int NameLength = 256;

// A registry key, open while the object exists, if it could be opened.
class OpenKey {
 public:
  OpenKey(RegistryKey root, const RX::UniChar* path)
      : m_key(nullptr), m_isOpen(System::Current().OpenKey(root, path, KeyRead, &m_key) == StatusOk) {}
  ~OpenKey() {
    if (m_isOpen) System::Current().CloseKey(m_key);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  bool IsOpen() const { return m_isOpen; }
  RegistryKey Get() const { return m_key; }

  // Returns a value's text, whatever the value's type; empty when it cannot be read.
  CUnicodeString Read(const RX::UniChar* name) const {
    // One unit more than the size that the system is passed: a stored text need not end with a zero, nor with a whole
    // unit.
    RX::UniChar text[ValueBytes / sizeof(RX::UniChar) + 1];
    unsigned int size = ValueBytes;
    if (System::Current().QueryValue(m_key, name, text, &size) != StatusOk) return {};
    text[size / sizeof(RX::UniChar)] = 0;
    return CUnicodeString(text);
  }

 private:
  RegistryKey m_key;
  bool m_isOpen;
};

void AppendIfUsable(RegistryKey source, const RX::UniChar* version, InstalledJavaVms& list) {
  const OpenKey key(source, version);
  if (!key.IsOpen()) return;
  const CUnicodeString home = key.Read(RX_TEXT("JavaHome"));
  const CUnicodeString library = key.Read(RX_TEXT("RuntimeLib"));
  if (IsEmpty(home) || IsEmpty(library)) return;
  const CUnicodeString program = PathOfProgram(home, JavaProgram);
  if (FileExists(library) && FileExists(program)) list.Add({CUnicodeString(version), home});
}

// Returns the status that ended the enumeration; a source that cannot be opened has no items.
Status AppendFrom(const RX::UniChar* path, InstalledJavaVms& list) {
  System& system = System::Current();
  const OpenKey source(system.LocalMachine(), path);
  if (!source.IsOpen()) return StatusNoMoreItems;
  for (unsigned int index = 0;; ++index) {
    RX::UniChar name[NameLength];
    unsigned int length = NameLength;
    const Status status = system.EnumerateKey(source.Get(), index, name, &length);
    if (status != StatusOk) return status;
    AppendIfUsable(source.Get(), name, list);
  }
}

int CompareRecords(const void* left, const void* right) {
  return CompareNumbersBetweenDots(static_cast<const InstalledJavaVm*>(left)->version,
                                   static_cast<const InstalledJavaVm*>(right)->version);
}

int LeadingNumber(const RX::UniChar* text) noexcept {
  int number = 0;
  RX::suscanf(text, RX_TEXT("%d"), &number);
  return number;
}

// Returns what follows the first dot, or null.
const RX::UniChar* AfterDot(const RX::UniChar* text) noexcept {
  while (*text != 0 && *text != RX_TEXT('.')) ++text;
  return *text != 0 ? text + 1 : nullptr;
}

}  // namespace

bool InstalledJavaVm::IsCompatibleWith(const RX::UniChar* requested) const {
  if (IsEmpty(requested)) Fail(At(133), "Invalid vm version.");
  return CompareNumbersBetweenDots(requested, version) < 1;
}

int EnumerateInstalledJavaVms(InstalledJavaVms& list) {
  for (const RX::UniChar* source : Sources) {
    if (AppendFrom(source, list) == StatusNoMoreItems) continue;
    while (list.GetSize() > 0) list.RemoveElementAt(list.GetSize() - 1);
    break;
  }
  return static_cast<int>(list.GetSize());
}

int GetInstalledJavaVms(InstalledJavaVms& list) {
  const int count = EnumerateInstalledJavaVms(list);
  if (count != 0) list.Sort(&CompareRecords);
  return count;
}

int CompareNumbersBetweenDots(const RX::UniChar* a, const RX::UniChar* b) noexcept {
  // Intentional: "1.6" is older than "1.6.0", and the update after an underscore is ignored.
  for (;;) {
    const int numberOfA = LeadingNumber(a);
    const int numberOfB = LeadingNumber(b);
    if (numberOfA != numberOfB) return numberOfA < numberOfB ? -1 : 1;
    a = AfterDot(a);
    b = AfterDot(b);
    if (a == nullptr) return b == nullptr ? 0 : -1;
    if (b == nullptr) return 1;
  }
}

bool FileExists(const CUnicodeString& path) {
  System& system = System::Current();
  const unsigned int attributes = system.FileAttributes(path);
  if (attributes != NoFileAttributes) return (attributes & DirectoryAttribute) == 0;
  // The system returns these errors only for an existing file.
  const Status error = system.LastError();
  return error == StatusAccessDenied || error == StatusSharingViolation || error == StatusLockViolation;
}

CUnicodeString PathOfProgram(const CUnicodeString& home, const RX::UniChar* program) {
  return home.EndsWith(PathSeparator) ? home + program : home + PathSeparator + program;
}

}  // namespace torvan::jvmlauncher
