// The hook that the VM calls when it aborts.
#pragma once

#include <torvan/jni/options/Hook.h>

namespace torvan::jni::options {

// A function that the VM calls when it cannot go on, before it ends the process. The process ends even if it returns.
class TORVAN_API CAbortHook : public CHook {
 public:
  // "abort".
  static const RX::UniChar* const HookName;

  // Throws CIllegalArgumentException "Invalid abort hook." for null, and CMemoryException.
  CAbortHook(void (*hook)());
  CAbortHook(const CAbortHook& other);
  virtual ~CAbortHook();
  CAbortHook& operator=(const CAbortHook& other);

  const mirel::base::CClass* GetClass() const override;
  // Abort hooks with the same function are equal; their names are not compared.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns the function.
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCAbortHook;

 private:
  void (*m_hook)();
};

}  // namespace torvan::jni::options
