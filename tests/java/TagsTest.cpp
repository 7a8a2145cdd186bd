// What tags and descriptors the compiler takes; what it refuses is shown by the wrong uses.
#include <gtest/gtest.h>
#include <torvan/java/Field.h>
#include <torvan/java/Method.h>
#include <torvan/java/Tags.h>

namespace tests {
namespace {

namespace java = torvan::java;
using java::Array;
using java::detail::ArrayNameOf;
using java::detail::IsA;

struct Slashed {
  static constexpr char JavaName[] = "host/Base";
};
struct Dotted {
  static constexpr char JavaName[] = "host.Base";
};
struct Longer {
  static constexpr char JavaName[] = "host/Base2";
};
struct Derived {
  static constexpr char JavaName[] = "host/Derived";
  using Super = Dotted;
};

TEST(TagsTest, OneClassMayBeNamedWithSlashesAndWithDots) {
  EXPECT_TRUE((IsA<Slashed, Dotted>()));
  EXPECT_TRUE((IsA<Dotted, Slashed>()));
  EXPECT_TRUE((IsA<Derived, Slashed>()));
  EXPECT_TRUE((IsA<Array<Derived>, Array<Slashed>>()));
  EXPECT_STREQ(ArrayNameOf<Dotted>.data, "[Lhost/Base;");
}

TEST(TagsTest, OtherNamesAreOtherClasses) {
  EXPECT_FALSE((IsA<Slashed, Longer>()));
  EXPECT_FALSE((IsA<Longer, Dotted>()));
  EXPECT_FALSE((IsA<Slashed, Derived>()));
  EXPECT_FALSE((IsA<Array<Slashed>, Array<Derived>>()));
  EXPECT_FALSE((IsA<Array<jint>, Array<jlong>>()));
}

// Java may declare a more special class than C++ does; each of these is compiled.
TEST(TagsTest, AReferenceFitsAnArrayInADescriptor) {
  constexpr java::Method<Slashed, java::Local<java::Object>(java::Ref<java::Object>)> method{"get",
                                                                                             "([[I)[Lhost/Base;"};
  constexpr java::Field<Slashed, java::Global<java::Object>> field{"numbers", "[I"};
  static_cast<void>(method);
  static_cast<void>(field);
}

}  // namespace
}  // namespace tests
