#include <torvan/jni/options/Options.h>

#include <mirel/base/At.h>
#include <mirel/base/MemoryException.h>
#include <rx/Memory.h>

#include <cstring>

namespace torvan::jni::options {

using mirel::base::At;
using mirel::base::CException;
using mirel::base::CMemoryException;

namespace {

[[noreturn]] void FailWithoutMemory(unsigned int line) {
  throw CMemoryException("jni/options/Options", line, nullptr, nullptr);
}

}  // namespace

COptions::COptions() : CObjectVector(5, 5) {}
COptions::COptions(const COptions& other) = default;
COptions::~COptions() = default;
COptions& COptions::operator=(const COptions& other) = default;

void COptions::AddOption(const COption& option) { Add(option.Clone()); }

void COptions::RemoveOption(const COption& option) {
  try {
    if (Contains(&option)) RemoveElement(&option);
  } catch (const CException& exception) {
    mirel::base::PrintToDebugOut(exception);
  }
}

unsigned int COptions::GetOptionCount() const noexcept { return GetSize(); }

const COption& COptions::GetOptionAt(unsigned int index) const { return static_cast<const COption&>((*this)[index]); }

JavaVMOption* COptions::CreateJniOptions() const {
  const unsigned int count = GetOptionCount();
  // An empty set still needs a record, for the fill below.
  const std::size_t size = (count == 0 ? 1 : count) * sizeof(JavaVMOption);
  auto* options = static_cast<JavaVMOption*>(RX_malloc(size));
  if (options == nullptr) FailWithoutMemory(At(65));
  std::memset(options, 0, size);
  // Intentional: until the first option is rendered its record contains the low byte of the count, repeated. An
  // exception that passes leaves it so.
  std::memset(options, static_cast<int>(count & 0xFF), sizeof(JavaVMOption));

  unsigned int index = 0;
  char* text = nullptr;
  try {
    for (; index < count; ++index) {
      text = nullptr;
      const COption& option = GetOptionAt(index);
      const int textSize = option.GetOptionString().ToUTF8(nullptr, -1);
      text = static_cast<char*>(RX_malloc(static_cast<std::size_t>(textSize)));
      if (text == nullptr) FailWithoutMemory(At(79));
      // The option may answer with more the second time: the conversion truncates at the size.
      option.GetOptionString().ToUTF8(text, textSize);
      options[index].optionString = text;
      options[index].extraInfo = option.GetExtraInfo();
    }
  } catch (const CMemoryException&) {
    // The current record owns its text or nothing; those after it are still null.
    options[index].optionString = text;
    DestroyJniOptions(options);
    // Intentional: the caller receives the pointer of the array just released and cannot tell it from success.
  }
  return options;
}

void COptions::DestroyJniOptions(JavaVMOption* options) const {
  if (options == nullptr) return;
  for (unsigned int i = 0; i < GetOptionCount(); ++i) {
    if (options[i].optionString != nullptr) RX_free(options[i].optionString);
  }
  RX_free(options);
}

}  // namespace torvan::jni::options
