// The hook that the VM calls when Java ends the process.
#pragma once

#include <torvan/jni/options/Hook.h>

namespace torvan::jni::options {

// A function that the VM calls with the exit code when Java asks to end the process, for example by System.exit.
class TORVAN_API CExitHook : public CHook {
 public:
  // "exit".
  static const RX::UniChar* const HookName;

  // Throws CIllegalArgumentException "Invalid exit hook." for null, and CMemoryException.
  CExitHook(void (*hook)(int));
  CExitHook(const CExitHook& other);
  virtual ~CExitHook();
  CExitHook& operator=(const CExitHook& other);

  const mirel::base::CClass* GetClass() const override;
  // Exit hooks with the same name and the same function are equal.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns the function.
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCExitHook;

 private:
  void (*m_hook)(int);
};

}  // namespace torvan::jni::options
