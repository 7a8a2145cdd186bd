#include "java/win32/Pipe.h"

#include <torvan/java/Failure.h>

#include <algorithm>
#include <cstring>

#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

PipeEnd::PipeEnd(WindowsHandle pipe) : m_pipe(std::move(pipe)) {
  if (!m_pipe) return;
  m_event = WindowsHandle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (!m_event) {
    const std::string reason = ReasonOf(GetLastError());
    throw StartFailure("java/win32/Pipe", __LINE__, "Could not make an event for a pipe: " + reason);
  }
  m_buffer.reset(new char[BufferSize]);
  m_transfer.hEvent = m_event.Get();
}

void PipeEnd::Close() noexcept {
  if (!m_pipe) return;
  if (m_isUnderWay) {
    // Until the system confirms that the transfer has ended, it may write into our memory.
    DWORD size = 0;
    CancelIoEx(m_pipe.Get(), &m_transfer);
    GetOverlappedResult(m_pipe.Get(), &m_transfer, &size, TRUE);
    m_isUnderWay = false;
  }
  m_pipe.Close();
}

void PipeEnd::Begin(BOOL result) noexcept {
  const DWORD error = result != FALSE ? ERROR_IO_PENDING : GetLastError();
  m_isUnderWay = error == ERROR_IO_PENDING;
  if (!m_isUnderWay) CloseAfter(error);
}

std::optional<DWORD> PipeEnd::Finish() noexcept {
  DWORD size = 0;
  m_isUnderWay = false;
  if (GetOverlappedResult(m_pipe.Get(), &m_transfer, &size, FALSE) != FALSE) return size;
  CloseAfter(GetLastError());
  return std::nullopt;
}

void PipeEnd::CloseAfter(DWORD error) noexcept {
  const bool isGone = error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
  if (!isGone) m_error = error;
  Close();
}

bool ReadingEnd::Start() noexcept {
  if (m_pipe && !IsUnderWay()) Begin(ReadFile(m_pipe.Get(), m_buffer.get(), BufferSize, nullptr, &m_transfer));
  return IsOpen();
}

std::string_view ReadingEnd::Take() noexcept {
  if (!Start() || !IsDone()) return {};
  return {m_buffer.get(), Finish().value_or(0)};
}

void WritingEnd::Settle() noexcept {
  if (IsUnderWay() && IsDone()) Finish();
}

std::optional<std::size_t> WritingEnd::Write(std::string_view text) noexcept {
  if (!m_pipe) return std::nullopt;
  if (IsUnderWay()) return 0;
  const auto size = static_cast<DWORD>(std::min<std::size_t>(text.size(), BufferSize));
  std::memcpy(m_buffer.get(), text.data(), size);
  Begin(WriteFile(m_pipe.Get(), m_buffer.get(), size, nullptr, &m_transfer));
  if (!IsOpen()) return std::nullopt;
  return size;
}

}  // namespace torvan::java::detail
