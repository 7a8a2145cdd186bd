#include "java/processes/InputFeed.h"

#include <optional>
#include <utility>

namespace torvan::java::detail {

std::string_view InputFeed::Next() {
  if (m_piece.empty() && m_asks) {
    std::optional<std::string> next = m_settings.next();
    m_asks = next.has_value();
    m_returned = m_asks ? std::move(*next) : std::string();
    m_piece = m_returned;
  }
  return m_asks || !m_piece.empty() ? m_piece : std::string_view(m_written);
}

void InputFeed::Take(std::size_t size) {
  if (m_asks || !m_piece.empty()) {
    m_piece.remove_prefix(size);
  } else {
    m_written.erase(0, size);
    m_taken += size;
  }
}

void InputFeed::Drop() noexcept {
  m_asks = false;
  m_piece = {};
  m_written.clear();
}

}  // namespace torvan::java::detail
