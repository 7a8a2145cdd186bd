// The hook that the VM prints its messages with.
#pragma once

#include <torvan/jni/options/Hook.h>

#include <cstdarg>
#include <cstdio>

namespace torvan::jni::options {

// A function that the VM calls in place of vfprintf for its own messages.
class TORVAN_API CVfprintfHook : public CHook {
 public:
  // "vfprintf".
  static const RX::UniChar* const HookName;

  // Throws CIllegalArgumentException "Invalid vfprintf hook." for null, and CMemoryException.
  CVfprintfHook(int (*hook)(FILE*, const char*, va_list));
  CVfprintfHook(const CVfprintfHook& other);
  virtual ~CVfprintfHook();
  CVfprintfHook& operator=(const CVfprintfHook& other);

  const mirel::base::CClass* GetClass() const override;
  // Vfprintf hooks with the same name and the same function are equal.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns the function.
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCVfprintfHook;

 private:
  int (*m_hook)(FILE*, const char*, va_list);
};

}  // namespace torvan::jni::options
