// What start-up and shut-down work with.
#pragma once

namespace torvan {

// The foundation library's entry points, and the number of uses of this library that stand on them.
struct Foundation {
  int (*initialize)() noexcept;
  int (*terminate)() noexcept;
  int useCount;

  // The one in force: the foundation library itself, unless a test has put another in its place.
  static Foundation& Current() noexcept;
};

// Puts a foundation, with its use count, in force for the life of the scope. For tests.
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
