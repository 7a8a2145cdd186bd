// Text that comes in pieces, line by line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace torvan::java::detail {

// Lines end with "\n" or "\r\n"; the last one may lack that.
class Lines {
 public:
  // Calls `onLine` with each line that is whole now, without its end.
  template <class OnLine>
  void Add(std::string_view piece, const OnLine& onLine) {
    for (std::size_t end; (end = piece.find('\n')) != std::string_view::npos; piece.remove_prefix(end + 1)) {
      m_begun.append(piece.substr(0, end));
      if (!m_begun.empty() && m_begun.back() == '\r') m_begun.pop_back();
      onLine(std::string_view(m_begun));
      m_begun.clear();
    }
    m_begun.append(piece);
  }

  // Calls `onLine` with what came after the last line's end, if anything did.
  template <class OnLine>
  void Finish(const OnLine& onLine) {
    if (!m_begun.empty()) onLine(std::string_view(m_begun));
    m_begun.clear();
  }

 private:
  std::string m_begun;
};

}  // namespace torvan::java::detail
