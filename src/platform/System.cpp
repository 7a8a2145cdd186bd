#include "platform/System.h"

namespace torvan::platform {

System* System::s_current = nullptr;

System& System::Current() noexcept { return s_current != nullptr ? *s_current : Native(); }

}  // namespace torvan::platform
