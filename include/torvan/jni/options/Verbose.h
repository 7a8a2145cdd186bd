// What the VM reports about itself.
#pragma once

#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// The "-verbose:" switch.
// Flag 1 is class loading, flag 2 garbage collection; both together also switch on JNI reports, which cannot be
// switched on alone.
class TORVAN_API CVerbose : public COption {
 public:
  // Keeps the flags unchanged; bits above the two lowest mean nothing.
  // Throws CIllegalArgumentException "Invalid verbose flags." when neither flag 1 nor flag 2 is set.
  CVerbose(unsigned int flags);
  CVerbose(const CVerbose& other);
  virtual ~CVerbose();
  CVerbose& operator=(const CVerbose& other);

  unsigned int GetFlags() const noexcept { return m_flags; }

  const mirel::base::CClass* GetClass() const override;
  // Verbose options with the same flags are equal; bits without meaning count, too.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns for example "-verbose:class,gc,jni".
  mirel::base::CUnicodeString GetOptionString() const override;
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCVerbose;

 private:
  unsigned int m_flags;
};

}  // namespace torvan::jni::options
