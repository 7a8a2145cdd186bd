// The options that begin with -X.
#pragma once

#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher::options {

// A non-standard option without its "-X": "mx512m" renders as -Xmx512m. Immutable and never quoted.
class TORVAN_API CNonStandardOption : public CJavaVmOption {
 public:
  // Throws CIllegalArgumentException "Invalid non-standard java vm option." for null or empty text.
  CNonStandardOption(const RX::UniChar* option);
  CNonStandardOption(const CNonStandardOption& other);
  virtual ~CNonStandardOption();
  CNonStandardOption& operator=(const CNonStandardOption& other);

  // Returns the text without "-X".
  const mirel::base::CUnicodeString& GetOption() const;

  const mirel::base::CClass* GetClass() const override;
  // Texts are compared exactly.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCNonStandardOption;

 protected:
  // Constructs an option without text, to be assigned to.
  CNonStandardOption();

  mirel::base::CUnicodeString RenderCommandLine() const override;
  unsigned int ToArgumentList(CArgumentList& list) const override;

 private:
  mirel::base::CUnicodeString m_option;
};

}  // namespace torvan::jvmlauncher::options
