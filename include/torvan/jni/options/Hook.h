// A function of the host that the VM calls.
#pragma once

#include <rx/Text.h>
#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// The base of the hooks that JNI knows: the option's text is the hook's name, its extra information the function.
// The function must stay callable as long as the VM runs. The VM calls it on any thread.
class TORVAN_API CHook : public COption {
 public:
  CHook(const CHook& other);
  virtual ~CHook();
  CHook& operator=(const CHook& other);

  const mirel::base::CUnicodeString& GetHookName() const noexcept { return m_hookName; }

  const mirel::base::CClass* GetClass() const override;
  // Returns the hook's name.
  mirel::base::CUnicodeString GetOptionString() const override;

  static mirel::base::CClass m_classCHook;

 protected:
  // Copies the name. Throws CIllegalArgumentException "Invalid hook name." when it is null or empty, and
  // CMemoryException.
  CHook(const RX::UniChar* name);

 private:
  mirel::base::CUnicodeString m_hookName;
};

}  // namespace torvan::jni::options
