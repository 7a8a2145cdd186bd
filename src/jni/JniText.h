// Text for JNI.
#pragma once

#include <mirel/base/UnicodeString.h>
#include <rx/Text.h>
#include <torvan/jni/JavaVm.h>

#include "jni/Ascii.h"

namespace torvan::jni {

// A class name, member name or signature as JNI takes it, for operations that accept narrow and wide text.
// Narrow text is passed on; wide text is converted on construction, which can run out of memory. So where an operation
// makes one decides the order of its failures. Null stays null.
template <typename Unit>
class CJniText;

template <>
class CJniText<char> {
 public:
  explicit CJniText(const char* text) noexcept : m_text(text) {}
  operator const char*() const noexcept { return m_text; }

 private:
  const char* m_text;
};

template <>
class CJniText<RX::UniChar> {
 public:
  // Throws CMemoryException.
  explicit CJniText(const RX::UniChar* text)
      : m_text(AsAscii(text)),
        m_converted(m_text == nullptr ? mirel::base::CUnicodeString(text).ToUTF8() : mirel::base::CString()) {
    if (m_text == nullptr) m_text = m_converted;
  }
  CJniText(const CJniText&) = delete;
  CJniText& operator=(const CJniText&) = delete;

  operator const char*() const noexcept { return m_text; }

 private:
  // Nearly all names are short and ASCII, which both encodings share: they need no heap. Null for others.
  const char* AsAscii(const RX::UniChar* text) noexcept {
    if (text == nullptr) return nullptr;
    const std::size_t size = RX::ucslen(text) + 1;
    if (size > sizeof m_ascii) return nullptr;
    return CopyAscii(text, size, m_ascii) ? m_ascii : nullptr;
  }

  char m_ascii[128];
  const char* m_text;
  mirel::base::CString m_converted;
};

CJniText(const char*)->CJniText<char>;
CJniText(const RX::UniChar*)->CJniText<RX::UniChar>;

// Copies the characters of a Java string up to the first zero unit and returns them to the VM, even when the copy
// fails. Throws CMemoryException.
mirel::base::CUnicodeString TakeCharacters(JNIEnv* env, jstring string, const jchar* characters);

// Creates a Java string of wide text and returns its local reference.
// For null and empty text it returns null without asking the VM. Throws what attaching throws, and CJavaException.
jstring CreateJavaString(const CJavaVm& vm, const RX::UniChar* text);

}  // namespace torvan::jni
