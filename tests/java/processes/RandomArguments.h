// Arguments that are likely to be lost or split on their way to a program.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace tests {

// Those that have been, somewhere.
inline const std::vector<std::string>& KnownArguments() {
  static const std::vector<std::string> s_known = {"plain",
                                                   "two words",
                                                   "",
                                                   "a\tb",
                                                   "\"quoted\"",
                                                   "say \"hi\"",
                                                   "5\" disk",
                                                   "x\" -y \"z",
                                                   "C:\\dir\\",
                                                   "C:\\my dir",
                                                   "C:\\my dir\\",
                                                   "C:\\my dir\\\\",
                                                   "say \\\"hi\\\"",
                                                   "\"\"",
                                                   "\\",
                                                   "\\\\\"",
                                                   "'",
                                                   "it's",
                                                   "#no comment",
                                                   "a#b",
                                                   "-jar",
                                                   "--",
                                                   "@file",
                                                   "@",
                                                   "@@x",
                                                   "*",
                                                   "?.txt",
                                                   "*.jar",
                                                   "%PATH%",
                                                   "$HOME",
                                                   "`id`",
                                                   "^&|<>()",
                                                   "a\nb",
                                                   "\r\n",
                                                   "\f\v",
                                                   " ",
                                                   "  ends with  ",
                                                   "\\n",
                                                   "~",
                                                   "!x!",
                                                   "-Dx=y",
                                                   "-cp",
                                                   "\xC3\xA4\xC3\xB6\xC3\xBC",
                                                   "a;b:c",
                                                   "\x7F",
                                                   "\x01"};
  return s_known;
}

// Random texts, the same in every run, of what quoting, shells, launchers and encodings get wrong.
class RandomArguments {
 public:
  explicit RandomArguments(const std::vector<std::string>& pieces) : m_pieces(pieces) {}

  std::string Next() {
    std::string argument;
    for (std::uint32_t left = Below(12); left > 0; --left) argument += m_pieces[Below(m_pieces.size())];
    return argument;
  }
  std::vector<std::string> Next(std::size_t count) {
    std::vector<std::string> arguments(count);
    for (std::string& argument : arguments) argument = Next();
    return arguments;
  }

 private:
  std::uint32_t Below(std::size_t end) {
    m_state = m_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>((m_state >> 33) % end);
  }

  const std::vector<std::string>& m_pieces;
  std::uint64_t m_state = 1;
};

// Pieces of ASCII, and pieces of all that UTF-8 has.
inline const std::vector<std::string>& AsciiPieces() {
  static const std::vector<std::string> s_pieces = [] {
    std::vector<std::string> pieces = {"\\", "\\\\", "\"",   "\"", " ", " ", "'",
                                       "\n", "\r\n", "word", "@",  "-", "*", "?"};
    for (char byte = 1; byte < 0x7F; ++byte) pieces.emplace_back(1, byte);
    return pieces;
  }();
  return s_pieces;
}
inline const std::vector<std::string>& AllPieces() {
  static const std::vector<std::string> s_pieces = [] {
    std::vector<std::string> pieces = AsciiPieces();
    for (const char* piece : {"\xC2\x85", "\xC3\xA9", "e\xCC\x81", "\xE2\x80\xA8", "\xE6\x97\xA5", "\xEF\xBB\xBF",
                              "\xEF\xBF\xBD", "\xEF\xBF\xBF", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"}) {
      pieces.emplace_back(piece);
    }
    return pieces;
  }();
  return s_pieces;
}

// How many to try: `few`, unless the variable RANDOM_ARGUMENTS says otherwise.
inline std::size_t RandomArgumentCount(std::size_t few) {
  const char* const count = std::getenv("RANDOM_ARGUMENTS");
  return count != nullptr ? std::strtoul(count, nullptr, 10) : few;
}

}  // namespace tests
