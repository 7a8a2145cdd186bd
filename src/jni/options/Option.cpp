#include <torvan/jni/options/Option.h>

namespace torvan::jni::options {

using mirel::base::CClass;

COption::COption() = default;
COption::COption(const COption& other) = default;
COption::~COption() = default;
COption& COption::operator=(const COption& other) = default;

const CClass* COption::GetClass() const { return &m_classCOption; }

}  // namespace torvan::jni::options
