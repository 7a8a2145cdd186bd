// A fuzzer's checks without libFuzzer: the inputs in a folder, and others made of the words of its dictionary, the same
// in every run. By another compiler than clang they find little that is new, but show at once when what held holds no
// more.
//   replay DICTIONARY SEEDS COUNT
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "fuzz/Fuzz.h"

namespace {

// The words of a dictionary: "..." a line, with \", \\ and \xNN.
std::vector<std::string> ReadWords(const char* path) {
  std::vector<std::string> words;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.size() < 2 || line[0] != '"') continue;
    std::string word;
    for (std::size_t i = 1; i + 1 < line.size(); ++i) {
      if (line[i] != '\\') {
        word += line[i];
      } else if (line[i + 1] == 'x') {
        word += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
        i += 3;
      } else {
        word += line[++i];
      }
    }
    words.push_back(word);
  }
  return words;
}

void Check(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(input.data()), input.size());
}

// Returns how many there are.
int CheckSeeds(const char* folder) {
  int count = 0;
  std::error_code error;
  for (std::filesystem::directory_iterator seed(folder, error), end; !error && seed != end; seed.increment(error)) {
    std::ifstream file(seed->path(), std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::printf("%s\n", seed->path().c_str());  // the last one is at fault where this ends
    std::fflush(stdout);
    Check(input);
    ++count;
  }
  return count;
}

class Inputs {
 public:
  explicit Inputs(std::vector<std::string> words) : m_words(std::move(words)) {}

  std::string Next() {
    std::string input;
    for (std::size_t left = Below(10); left > 0; --left) {
      const std::size_t kind = Below(8);
      input += kind == 0 ? std::string(1, static_cast<char>(Below(256))) : m_words[Below(m_words.size())];
      if (kind == 1 && !input.empty()) input[Below(input.size())] = static_cast<char>(Below(256));
      if (kind == 2) input += std::to_string(Below(100));
    }
    return input;
  }

 private:
  std::size_t Below(std::size_t end) {
    m_state = m_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::size_t>(m_state >> 33) % end;
  }

  std::vector<std::string> m_words;
  std::uint64_t m_state = 1;
};

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words = count == 4 ? ReadWords(arguments[1]) : std::vector<std::string>();
  if (words.empty()) {
    std::fprintf(stderr, "usage: replay DICTIONARY SEEDS COUNT; a dictionary has words\n");
    return 2;
  }
  const int seeds = CheckSeeds(arguments[2]);
  if (seeds == 0) {
    std::fprintf(stderr, "there is no seed in %s\n", arguments[2]);
    return 2;
  }
  Inputs inputs(words);
  for (long left = std::atol(arguments[3]); left > 0; --left) Check(inputs.Next());
  std::printf("%d seeds and %s other inputs\n", seeds, arguments[3]);
  return 0;
}
