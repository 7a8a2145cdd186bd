#include "Plugin.h"

#include <mirel/base/MemoryException.h>
#include <rx/OutOfMemoryException.h>
#include <rx/UniString.h>

namespace plugin {

mirel::base::CClass CPluginException::m_classCPluginException("plugin::CPluginException", "mirel::base::CException",
                                                              nullptr, nullptr, sizeof(CPluginException), nullptr);

CPluginException::CPluginException(const char* file, unsigned int line, const char* message)
    : CException(file, line, message, nullptr) {}

CPluginException::~CPluginException() = default;

const mirel::base::CClass* CPluginException::GetClass() const { return &m_classCPluginException; }

void Throw() { throw CPluginException("plugin/Plugin", 17, "From another library."); }

bool CatchesOutOfMemoryOfRootLibrary() {
  try {
    RX::UniString text(RX_TEXT("text"));
    return false;
  } catch (const RX::OutOfMemoryException&) {
    return true;
  }
}

bool CatchesMemoryExceptionOfFoundation() {
  try {
    delete new CPluginException(nullptr, 0, nullptr);
    return false;
  } catch (const mirel::base::CMemoryException&) {
    return true;
  }
}

}  // namespace plugin
