#include <rx/Text.h>

namespace RX {

std::size_t ucslen(const UniChar* text) noexcept {
  const UniChar* end = text;
  while (*end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

}  // namespace RX
