// The table of the documentation that shows what arguments become.

#include <fstream>
#include <regex>

#include "jvmlauncher/LaunchSystemTest.h"

namespace tests {

using namespace torvan::jvmlauncher;
using testing::ElementsAreArray;

namespace {

using Texts = std::vector<std::string>;

// The code spans of a table cell; "(empty)" is an empty text, "(nothing)" none.
Texts TextsOf(const std::string& cell) {
  Texts texts;
  const std::regex piece("``?([^`]+)`|\\(empty\\)|\\(nothing\\)");
  for (std::sregex_iterator it(cell.begin(), cell.end(), piece), end; it != end; ++it) {
    if (it->str() == "(nothing)") continue;
    texts.push_back(std::regex_replace((*it)[1].str(), std::regex("<tab>"), "\t"));
  }
  return texts;
}

class RenderingPageTest : public LaunchSystemTest {};

TEST_F(RenderingPageTest, TheTableOfTheDocumentationIsTrue) {
  std::ifstream document(TORVAN_LAUNCHING_PAGE);
  ASSERT_TRUE(document.good()) << TORVAN_LAUNCHING_PAGE;
  const std::regex row("\\| (`.*`|\\(empty\\)) \\| (`.*`|\\(nothing\\)) \\| (`.*`|\\(empty\\)|\\(nothing\\)) \\|");
  int rows = 0;
  bool inTable = false;
  for (std::string line; std::getline(document, line);) {
    if (line.compare(0, 11, "| argument ") == 0) inTable = true;
    if (line.empty()) inTable = false;
    std::smatch cells;
    if (!inTable || !std::regex_match(line, cells, row)) continue;
    SCOPED_TRACE(line);
    ++rows;
    const CArgumentList list = ListOf(TextsOf(cells[1]));
    ASSERT_EQ(list.GetArgumentCount(), 1u);
    const Texts rendered = TextsOf(cells[2]);
    EXPECT_EQ(LineOf(list), (rendered.empty() ? "" : rendered.front()) + " ");
    Texts expected = TextsOf(cells[3]);
    expected.insert(expected.begin(), "Main");
    EXPECT_THAT(Received({}, RX_TEXT("Main"), list), ElementsAreArray(expected));
  }
  EXPECT_EQ(rows, 14);
}

}  // namespace
}  // namespace tests
