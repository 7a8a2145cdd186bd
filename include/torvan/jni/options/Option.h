// A start option of a Java VM in this process.
#pragma once

#include <mirel/base/Object.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/Export.h>

namespace torvan::jni::options {

// One start option: a text and a pointer that the VM may want with it.
// Options never change once a set holds them: the set keeps clones. A class of your own overrides GetClass, Equals,
// Clone and the two operations below; a set can neither hold an option without Clone nor find one without Equals.
class TORVAN_API COption : public mirel::base::CObject {
 public:
  // Options have nothing of their own to copy at this level.
  COption(const COption& other);
  virtual ~COption();
  COption& operator=(const COption& other);

  const mirel::base::CClass* GetClass() const override;

  // Gives the text as the VM is to see it. Asked twice for each VM created; both answers should be the same.
  virtual mirel::base::CUnicodeString GetOptionString() const = 0;
  // Gives what JNI calls the option's extra information: a hook's function, else null. It is not owned by the VM.
  virtual void* GetExtraInfo() const = 0;

  static mirel::base::CClass m_classCOption;

 protected:
  COption();
};

}  // namespace torvan::jni::options
