// The foundation library as start-up and shut-down see it.
#pragma once

namespace torvan {

// The foundation library's entry points, and how often this library is in use.
struct Foundation {
  int (*initialize)() noexcept;
  int (*terminate)() noexcept;
  int useCount;

  // Returns the one that is used: the foundation library itself, unless a test has replaced it.
  static Foundation& Current() noexcept;
};

// Replaces the foundation, with its use count, until the end of the scope. For tests.
class FoundationScope {
 public:
  explicit FoundationScope(const Foundation& foundation) noexcept : m_previous(Foundation::Current()) {
    Foundation::Current() = foundation;
  }
  ~FoundationScope() { Foundation::Current() = m_previous; }
  FoundationScope(const FoundationScope&) = delete;
  FoundationScope& operator=(const FoundationScope&) = delete;

 private:
  Foundation m_previous;
};

}  // namespace torvan
