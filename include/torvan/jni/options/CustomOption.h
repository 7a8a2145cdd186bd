// An option given as its literal text.
#pragma once

#include <rx/Text.h>
#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

// An option whose complete text the host writes, for example "-Xmx64m".
class TORVAN_API CCustomOption : public COption {
 public:
  // Copies the text. Throws CIllegalArgumentException "Invalid custom option value." when it is null or empty, and
  // CMemoryException.
  CCustomOption(const RX::UniChar* value);
  CCustomOption(const CCustomOption& other);
  virtual ~CCustomOption();
  CCustomOption& operator=(const CCustomOption& other);

  const mirel::base::CUnicodeString& GetValue() const noexcept { return m_value; }

  const mirel::base::CClass* GetClass() const override;
  // Custom options with the same text are equal.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;
  // Returns the text unchanged.
  mirel::base::CUnicodeString GetOptionString() const override;
  void* GetExtraInfo() const override;

  static mirel::base::CClass m_classCCustomOption;

 private:
  mirel::base::CUnicodeString m_value;
};

}  // namespace torvan::jni::options
