// A start option of a Java VM in this process.
#pragma once

#include <mirel/base/Object.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/Export.h>

namespace torvan::jni::options {

// One start option: a text, and a pointer that the VM may want with it.
// A set keeps clones, and an option in a set never changes. A class of your own overrides GetClass, Equals, Clone and
// the two operations below: a set cannot hold an option without Clone, nor find one without Equals.
class TORVAN_API COption : public mirel::base::CObject {
 public:
  // There is nothing to copy at this level.
  COption(const COption& other);
  virtual ~COption();
  COption& operator=(const COption& other);

  const mirel::base::CClass* GetClass() const override;

  // Returns the text that the VM is to see. Called twice for each VM created; both results should be the same.
  virtual mirel::base::CUnicodeString GetOptionString() const = 0;
  // Returns JNI's "extra information": a hook's function, else null. The VM does not own it.
  virtual void* GetExtraInfo() const = 0;

  static mirel::base::CClass m_classCOption;

 protected:
  COption();
};

}  // namespace torvan::jni::options
