// Options in the caller's own words.
#pragma once

#include <torvan/Export.h>
#include <torvan/jvmlauncher/JavaVmOption.h>

namespace torvan::jvmlauncher::options {

// One option or several, exactly as the command line is to have them. Immutable.
// Nothing is added and nothing quoted: the text contains the quotes that it needs.
class TORVAN_API CDirectOption : public CJavaVmOption {
 public:
  // Throws CIllegalArgumentException "Invalid direct java vm option." for null or empty text.
  CDirectOption(const RX::UniChar* option);
  CDirectOption(const CDirectOption& other);
  virtual ~CDirectOption();
  CDirectOption& operator=(const CDirectOption& other);

  // Returns the text unchanged.
  const mirel::base::CUnicodeString& GetOption() const;

  const mirel::base::CClass* GetClass() const override;
  // Texts are compared exactly.
  bool Equals(const mirel::base::CObject* other) const override;
  mirel::base::CObject* Clone() const override;

  static mirel::base::CClass m_classCDirectOption;

 protected:
  // Constructs an option without text, to be assigned to.
  CDirectOption();

  mirel::base::CUnicodeString RenderCommandLine() const override;
  unsigned int ToArgumentList(CArgumentList& list) const override;

 private:
  mirel::base::CUnicodeString m_option;
};

}  // namespace torvan::jvmlauncher::options
