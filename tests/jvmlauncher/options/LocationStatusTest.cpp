// How the launcher uses a location's status and its path, one independent of the other.

#include <gtest/gtest.h>
#include <mirel/base/IllegalArgumentException.h>
#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

#include "fakes/Failure.h"
#include "fakes/WideText.h"

namespace tests {

using namespace torvan::jvmlauncher;
using namespace torvan::jvmlauncher::options;
using mirel::base::CIllegalArgumentException;
using Place::Location;

namespace {

// In this program's file-location library a location is written as its answer: "status:path".
struct Row {
  const char* name;
  const RX::UniChar* location;
  const char* path;
  bool failed;
};
void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class LocationStatusTest : public testing::TestWithParam<Row> {
 protected:
  const Location location{GetParam().location};
  const std::string path = GetParam().path;
};

INSTANTIATE_TEST_SUITE_P(Answers, LocationStatusTest,
                         testing::Values(Row{"Path", RX_TEXT("0:/a b"), "/a b", false},
                                         Row{"PathInSpiteOfAStatus", RX_TEXT("1:/a b"), "/a b", true},
                                         Row{"PathInSpiteOfANegativeStatus", RX_TEXT("-3:/a b"), "/a b", true},
                                         Row{"PathInSpiteOfAStatusBeyond16Bits", RX_TEXT("65536:/a"), "/a", true},
                                         Row{"NoPathInSpiteOfSuccess", RX_TEXT("0:"), "", false},
                                         Row{"NeitherPathNorSuccess", RX_TEXT("1:"), "", true}),
                         [](const auto& row) { return row.param.name; });

TEST_P(LocationStatusTest, AnArgumentIsThePathWhateverTheStatus) {
  CArgumentList list;
  list.Append(location);
  ASSERT_EQ(list.GetArgumentCount(), 1u);
  EXPECT_EQ(Narrow(list.GetArgumentAt(0)), path);
}

TEST_P(LocationStatusTest, AClassPathEntryIsThePathWhateverTheStatus) {
  CClassPathOption option;
  option.AddEntry(location);
  ASSERT_EQ(option.GetEntryCount(), 1u);
  EXPECT_EQ(Narrow(option.GetEntryAt(0)), path);
}

TEST_P(LocationStatusTest, AJarIsRefusedForItsPathOnly) {
  std::string jar;
  const Failure failure = FailureOf([&] { jar = Narrow(CJarOption(location).GetJarFilePath()); });
  EXPECT_EQ(failure, path.empty() ? Throws<CIllegalArgumentException>("jvmlauncher/options/JarOption", 67,
                                                                      "Invalid jar file path.")
                                  : Failure());
  EXPECT_EQ(jar, path);
}

TEST_P(LocationStatusTest, APropertyIsRefusedForTheStatusThenForItsNameThenForThePath) {
  const auto refusal = [](unsigned int line, const char* message) {
    return Throws<CIllegalArgumentException>("jvmlauncher/options/SystemPropertyOption", line, message);
  };
  const Failure status = refusal(106, "Invalid system property value.");
  std::string value;
  const auto make = [&](const RX::UniChar* name) {
    return FailureOf([&] { value = Narrow(CSystemPropertyOption(name, location).GetPropertyValue()); });
  };
  const bool failed = GetParam().failed;
  EXPECT_EQ(make(nullptr), failed ? status : refusal(109, "Invalid system property name."));
  EXPECT_EQ(make(RX_TEXT("")), failed ? status : refusal(109, "Invalid system property name."));
  const Failure empty = refusal(111, "Invalid system property value.");
  EXPECT_EQ(make(RX_TEXT("a b")), failed         ? status
                                  : path.empty() ? empty
                                                 : refusal(117, "Invalid system property name."));
  EXPECT_EQ(value, "");
  EXPECT_EQ(make(RX_TEXT("n")), failed ? status : path.empty() ? empty : Failure());
  EXPECT_EQ(value, failed ? "" : path);
}

}  // namespace
}  // namespace tests
