// A handle that closes itself.
#pragma once

#include <windows.h>

#include <utility>

namespace torvan::java::detail {

class WindowsHandle {
 public:
  WindowsHandle() = default;
  explicit WindowsHandle(HANDLE handle) noexcept : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  WindowsHandle(WindowsHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
  WindowsHandle& operator=(WindowsHandle&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }
  ~WindowsHandle() { Close(); }

  HANDLE Get() const noexcept { return m_handle; }
  explicit operator bool() const noexcept { return m_handle != nullptr; }

  void Close() noexcept {
    if (m_handle != nullptr) CloseHandle(m_handle);
    m_handle = nullptr;
  }

 private:
  HANDLE m_handle = nullptr;
};

}  // namespace torvan::java::detail
