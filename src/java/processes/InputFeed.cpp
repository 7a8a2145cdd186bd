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
  return m_asks || !m_piece.empty() ? m_piece : std::string_view(m_written).substr(m_start);
}

void InputFeed::Append(std::string_view written) {
  // The rest is moved to the front only when that is the smaller part: however much is queued, it is moved few times.
  if (m_start > m_written.size() / 2) {
    m_written.erase(0, m_start);
    m_start = 0;
  }
  m_written.append(written);
}

void InputFeed::Take(std::size_t size) {
  if (m_asks || !m_piece.empty()) {
    m_piece.remove_prefix(size);
  } else {
    m_start += size;
    m_taken += size;
    if (m_start == m_written.size()) DropWritten();
  }
}

void InputFeed::Drop() noexcept {
  m_asks = false;
  m_piece = {};
  DropWritten();
}

void InputFeed::DropWritten() noexcept {
  m_written.clear();
  m_start = 0;
}

}  // namespace torvan::java::detail
