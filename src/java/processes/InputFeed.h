// What a program is to read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

// First what the settings say, then what the host has written since.
class InputFeed {
 public:
  explicit InputFeed(const InputSettings& settings)
      : m_settings(settings), m_piece(settings.text), m_asks(settings.kind == InputSettings::Kind::Function) {}
  InputFeed(const InputFeed&) = delete;
  InputFeed& operator=(const InputFeed&) = delete;

  void Append(std::string_view written);
  // Tells whether Next() has something, or will ask for it.
  bool HasMore() const noexcept { return m_asks || !m_piece.empty() || !m_written.empty(); }
  // Returns what comes next; empty when the settings' function has returned an empty text, and at the end of the input.
  std::string_view Next();
  void Take(std::size_t size);
  void Drop() noexcept;

  // How many of the appended bytes were taken.
  std::size_t Taken() const noexcept { return m_taken; }

 private:
  void DropWritten() noexcept;

  const InputSettings& m_settings;
  std::string m_returned;    // the last text that the function returned
  std::string_view m_piece;  // what is left of that text, or of the settings' text
  bool m_asks;
  std::string m_written;
  std::size_t m_start = 0;  // where the part of m_written that was not taken begins
  std::size_t m_taken = 0;
};

}  // namespace torvan::java::detail
