// This process's ends of the pipes to a program.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "java/win32/Handle.h"

namespace torvan::java::detail {

// What the ends have in common: a transfer that may be under way, and the event that signals its end.
class PipeEnd {
 public:
  PipeEnd() = default;
  // Takes an end that was opened for overlapped transfers, or none. Throws a StartFailure.
  explicit PipeEnd(WindowsHandle pipe);
  ~PipeEnd() { Close(); }
  PipeEnd(const PipeEnd&) = delete;
  PipeEnd& operator=(const PipeEnd&) = delete;

  bool IsOpen() const noexcept { return static_cast<bool>(m_pipe); }
  // The error that closed it; none when the other end was closed, as is usual.
  DWORD Error() const noexcept { return m_error; }
  // Signalled when the transfer that is under way has ended.
  HANDLE Event() const noexcept { return m_event.Get(); }
  // Closes this end; cancels a transfer that is under way.
  void Close() noexcept;

 protected:
  static constexpr DWORD BufferSize = 64 * 1024;

  bool IsUnderWay() const noexcept { return m_isUnderWay; }
  bool IsDone() const noexcept { return WaitForSingleObject(m_event.Get(), 0) == WAIT_OBJECT_0; }
  // Takes what ReadFile or WriteFile has returned. What cannot be transferred closes it.
  void Begin(BOOL result) noexcept;
  // Ends a transfer that is done and returns its size; on failure closes the pipe and returns nullopt.
  std::optional<DWORD> Finish() noexcept;

  WindowsHandle m_pipe;
  WindowsHandle m_event;
  OVERLAPPED m_transfer{};
  std::unique_ptr<char[]> m_buffer;

 private:
  void CloseAfter(DWORD error) noexcept;

  bool m_isUnderWay = false;
  DWORD m_error = ERROR_SUCCESS;
};

class ReadingEnd : public PipeEnd {
 public:
  using PipeEnd::PipeEnd;

  // Begins to read where nothing is under way. False when it is closed.
  bool Start() noexcept;
  // What has come; empty when that is nothing. Valid until the next call of a member.
  std::string_view Take() noexcept;
};

class WritingEnd : public PipeEnd {
 public:
  using PipeEnd::PipeEnd;

  bool IsReady() const noexcept { return !IsUnderWay(); }
  // Ends a transfer that is done; one that has failed closes the pipe.
  void Settle() noexcept;
  // Returns how much of the text is on its way now; nullopt when it is closed.
  std::optional<std::size_t> Write(std::string_view text) noexcept;
};

}  // namespace torvan::java::detail
