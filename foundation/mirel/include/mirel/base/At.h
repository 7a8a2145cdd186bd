// The line number of a throw site that hosts rely on.
#pragma once

namespace mirel::base {

// A published source line: hosts and their support staff look failures up by it, so it stays when the code moves.
// A site without a published number passes __LINE__.
class At {
 public:
  explicit constexpr At(unsigned int line) noexcept : m_line(line) {}
  constexpr operator unsigned int() const noexcept { return m_line; }

 private:
  unsigned int m_line;
};

}  // namespace mirel::base
