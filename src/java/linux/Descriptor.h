// A descriptor that closes itself.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace torvan::java::detail {

// For waitid() with a process descriptor: P_PIDFD, which older C libraries lack.
constexpr auto WaitForPidfd = static_cast<idtype_t>(3);

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : m_number(number) {}
  Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Number() const noexcept { return m_number; }
  explicit operator bool() const noexcept { return m_number >= 0; }

  void Close() noexcept {
    if (m_number >= 0) close(m_number);
    m_number = -1;
  }

  // Moves it above the numbers of the standard descriptors: a host that has closed those would write into ours, and a
  // child's are put there. False, with errno set, when the process may open no more.
  bool MoveAboveStandard() noexcept {
    if (m_number > STDERR_FILENO) return true;
    Descriptor moved(fcntl(m_number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved) {
      const int error = errno;
      Close();
      errno = error;
      return false;
    }
    std::swap(m_number, moved.m_number);
    return true;
  }

 private:
  int m_number = -1;
};

}  // namespace torvan::java::detail
