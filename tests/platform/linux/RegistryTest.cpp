#include "platform/linux/Registry.h"

#include <gmock/gmock.h>

#include "fakes/WideText.h"

namespace tests {
namespace {

using testing::ElementsAre;
using namespace torvan::platform;

std::vector<std::string> SubKeys(const Registry& registry, const RX::UniChar* key) {
  std::vector<std::string> names;
  for (unsigned int index = 0;; ++index) {
    const auto name = registry.GetSubKeyName(key, index);
    if (name.GetLength() == 0) return names;
    names.push_back(Narrow(name));
  }
}

class RegistryTest : public testing::Test {
 protected:
  RegistryTest() {
    registry.AddValue(u"Software\\Java\\9\\", u"Home", u"/nine");
    registry.AddValue(u"Software\\Java\\9\\", u"Library", u"/nine/lib");
    registry.AddValue(u"Software\\Java\\", u"Current", u"17");
    registry.AddValue(u"Software\\Java\\17\\", u"Home", u"/seventeen");
    registry.AddValue(u"Software\\Java\\1\\", u"Home", u"/one");
    registry.AddValue(u"Software\\Java More\\x\\", u"Home", u"/x");
  }

  Registry registry;
};

TEST_F(RegistryTest, AKeyExistsWhenAValueIsInItOrBelowIt) {
  EXPECT_TRUE(registry.HasKey(u""));
  EXPECT_TRUE(registry.HasKey(u"SOFTWARE\\"));
  EXPECT_TRUE(registry.HasKey(u"Software\\Java\\"));
  EXPECT_TRUE(registry.HasKey(u"Software\\java\\17\\"));
  EXPECT_FALSE(registry.HasKey(u"Soft\\"));
  EXPECT_FALSE(registry.HasKey(u"Software\\Java\\17\\x\\"));
  EXPECT_FALSE(registry.HasKey(u"Software\\Java M\\"));
  EXPECT_FALSE(registry.HasKey(u"Software\\Wow6432Node\\"));
  EXPECT_FALSE(Registry().HasKey(u""));
}

TEST_F(RegistryTest, SubkeysComeOnceAndInOrder) {
  EXPECT_THAT(SubKeys(registry, u""), ElementsAre("Software"));
  EXPECT_THAT(SubKeys(registry, u"Software\\"), ElementsAre("Java", "Java More"));
  EXPECT_THAT(SubKeys(registry, u"software\\java\\"), ElementsAre("1", "17", "9"));
  EXPECT_THAT(SubKeys(registry, u"Software\\Java\\9\\"), ElementsAre());
}

TEST_F(RegistryTest, AValueIsFoundInItsOwnKeyOnly) {
  ASSERT_NE(nullptr, registry.FindValue(u"Software\\Java\\9\\", u"HOME"));
  EXPECT_EQ("/nine", Narrow(*registry.FindValue(u"Software\\Java\\9\\", u"HOME")));
  EXPECT_EQ("17", Narrow(*registry.FindValue(u"Software\\Java\\", u"Current")));
  EXPECT_EQ(nullptr, registry.FindValue(u"Software\\Java\\", u"Home"));
  EXPECT_EQ(nullptr, registry.FindValue(u"Software\\Java\\9\\", u"Hom"));
  EXPECT_EQ(nullptr, registry.FindValue(u"Software\\Java\\9\\", nullptr));
}

TEST_F(RegistryTest, AnEmptySubkeyOpensTheKeyItself) {
  const mirel::base::CRef<Registry> shared(new Registry(registry));
  for (const RX::UniChar* none : {static_cast<const RX::UniChar*>(nullptr), u""}) {
    RegistryKey key = nullptr;
    ASSERT_EQ(0, OpenedKey(shared, u"Software\\Java\\").Open(none, &key));
    unsigned int size = 0;
    EXPECT_EQ(0, static_cast<OpenedKey*>(key)->Query(u"Current", nullptr, &size));
    EXPECT_EQ(6u, size);
    delete static_cast<OpenedKey*>(key);
  }
}

}  // namespace
}  // namespace tests
