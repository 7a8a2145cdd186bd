// The Java class that the library has as bytes runs on Java 8.
#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>

#include "java/HandlerBytes.h"

namespace tests {
namespace {

// Entries of a class file's table of constants, as the Java VM numbers them.
struct Constant {
  enum Kind { Text = 1, Whole = 3, Single = 4, Long = 5, Double = 6, Class = 7, String = 8, NameAndType = 12 };
};
bool IsMember(int kind) { return kind >= 9 && kind <= 11; }

// What the class names.
class ClassFile {
 public:
  ClassFile() {
    m_magic = Number(4);
    m_minor = Number(2);
    m_version = Number(2);
    const unsigned count = Number(2);
    for (unsigned i = 1; i < count; ++i) {
      Entry& entry = m_entries[i];
      entry.kind = static_cast<int>(Number(1));
      if (entry.kind == Constant::Text) {
        entry.first = Number(2);
        entry.text.assign(reinterpret_cast<const char*>(m_next), entry.first);
        m_next += entry.first;
      } else if (entry.kind == Constant::Class || entry.kind == Constant::String) {
        entry.first = Number(2);
      } else if (entry.kind == Constant::NameAndType || IsMember(entry.kind)) {
        entry.first = Number(2);
        entry.second = Number(2);
      } else if (entry.kind == Constant::Whole || entry.kind == Constant::Single) {
        Number(4);
      } else if (entry.kind == Constant::Long || entry.kind == Constant::Double) {
        Number(8);
        ++i;  // it takes two places
      } else {
        ADD_FAILURE() << "entry " << i << " of a kind that Java 8 does not need for this class: " << entry.kind;
        return;
      }
    }
  }

  unsigned Magic() const { return m_magic; }
  unsigned Minor() const { return m_minor; }
  unsigned Version() const { return m_version; }

  // The other classes, without those of arrays.
  std::set<std::string> Classes() const {
    std::set<std::string> names;
    for (const auto& [index, entry] : m_entries) {
      const std::string name = entry.kind == Constant::Class ? TextOf(index) : "[";
      if (name[0] != '[' && name != torvan::java::detail::HandlerName) names.insert(name);
    }
    return names;
  }

  // The members of other classes, as "java/lang/Object.hashCode()I".
  std::set<std::string> Members() const {
    std::set<std::string> names;
    for (const auto& [index, entry] : m_entries) {
      if (!IsMember(entry.kind)) continue;
      const Entry& member = m_entries.at(entry.second);
      const std::string owner = TextOf(entry.first);
      if (owner != torvan::java::detail::HandlerName) {
        names.insert(owner + "." + m_entries.at(member.first).text + m_entries.at(member.second).text);
      }
    }
    return names;
  }

 private:
  struct Entry {
    int kind = 0;
    unsigned first = 0;
    unsigned second = 0;
    std::string text;
  };

  unsigned Number(int size) {
    unsigned number = 0;
    for (; size > 0; --size) number = number << 8 | *m_next++;
    return number;
  }
  const std::string& TextOf(unsigned index) const { return m_entries.at(m_entries.at(index).first).text; }

  const unsigned char* m_next = torvan::java::detail::HandlerBytes;
  unsigned m_magic = 0;
  unsigned m_minor = 0;
  unsigned m_version = 0;
  std::map<unsigned, Entry> m_entries;
};

TEST(HandlerBytesTest, IsAClassFileOfJava8) {
  const ClassFile file;
  EXPECT_EQ(file.Magic(), 0xCAFEBABEu);
  EXPECT_EQ(file.Minor(), 0u);
  EXPECT_EQ(file.Version(), 52u);
}

// All of them are in Java 8: a new one belongs here only if it is, too.
constexpr const char* const Members[] = {
    "[Ljava/lang/reflect/Method;.clone()Ljava/lang/Object;",
    "java/lang/Boolean.TYPELjava/lang/Class;",
    "java/lang/Boolean.booleanValue()Z",
    "java/lang/Boolean.valueOf(Z)Ljava/lang/Boolean;",
    "java/lang/Byte.byteValue()B",
    "java/lang/Byte.valueOf(B)Ljava/lang/Byte;",
    "java/lang/Character.charValue()C",
    "java/lang/Character.toUpperCase(C)C",
    "java/lang/Character.valueOf(C)Ljava/lang/Character;",
    "java/lang/Class.cast(Ljava/lang/Object;)Ljava/lang/Object;",
    "java/lang/Class.getClassLoader()Ljava/lang/ClassLoader;",
    "java/lang/Class.getGenericInterfaces()[Ljava/lang/reflect/Type;",
    "java/lang/Class.getName()Ljava/lang/String;",
    "java/lang/Class.getTypeParameters()[Ljava/lang/reflect/TypeVariable;",
    "java/lang/Class.isAssignableFrom(Ljava/lang/Class;)Z",
    "java/lang/Class.isInstance(Ljava/lang/Object;)Z",
    "java/lang/Class.isPrimitive()Z",
    "java/lang/ClassCastException.<init>(Ljava/lang/String;)V",
    "java/lang/Double.doubleToRawLongBits(D)J",
    "java/lang/Double.doubleValue()D",
    "java/lang/Double.longBitsToDouble(J)D",
    "java/lang/Double.valueOf(D)Ljava/lang/Double;",
    "java/lang/Float.floatToRawIntBits(F)I",
    "java/lang/Float.floatValue()F",
    "java/lang/Float.intBitsToFloat(I)F",
    "java/lang/Float.valueOf(F)Ljava/lang/Float;",
    "java/lang/Integer.intValue()I",
    "java/lang/Integer.toHexString(I)Ljava/lang/String;",
    "java/lang/Integer.valueOf(I)Ljava/lang/Integer;",
    "java/lang/Long.TYPELjava/lang/Class;",
    "java/lang/Long.longValue()J",
    "java/lang/Long.valueOf(J)Ljava/lang/Long;",
    "java/lang/NullPointerException.<init>(Ljava/lang/String;)V",
    "java/lang/Object.<init>()V",
    "java/lang/Object.getClass()Ljava/lang/Class;",
    "java/lang/Short.shortValue()S",
    "java/lang/Short.valueOf(S)Ljava/lang/Short;",
    "java/lang/String.charAt(I)C",
    "java/lang/String.equals(Ljava/lang/Object;)Z",
    "java/lang/String.hashCode()I",
    "java/lang/String.toCharArray()[C",
    "java/lang/StringBuilder.<init>()V",
    "java/lang/StringBuilder.append(C)Ljava/lang/StringBuilder;",
    "java/lang/StringBuilder.append(I)Ljava/lang/StringBuilder;",
    "java/lang/StringBuilder.append(Ljava/lang/Object;)Ljava/lang/StringBuilder;",
    "java/lang/StringBuilder.append(Ljava/lang/String;)Ljava/lang/StringBuilder;",
    "java/lang/StringBuilder.toString()Ljava/lang/String;",
    "java/lang/System.identityHashCode(Ljava/lang/Object;)I",
    "java/lang/UnsupportedOperationException.<init>(Ljava/lang/String;)V",
    "java/lang/reflect/Array.newInstance(Ljava/lang/Class;I)Ljava/lang/Object;",
    "java/lang/reflect/GenericArrayType.getGenericComponentType()Ljava/lang/reflect/Type;",
    "java/lang/reflect/Method.getDeclaringClass()Ljava/lang/Class;",
    "java/lang/reflect/Method.getGenericParameterTypes()[Ljava/lang/reflect/Type;",
    "java/lang/reflect/Method.getName()Ljava/lang/String;",
    "java/lang/reflect/Method.getParameterTypes()[Ljava/lang/Class;",
    "java/lang/reflect/Method.getReturnType()Ljava/lang/Class;",
    "java/lang/reflect/Method.isDefault()Z",
    "java/lang/reflect/ParameterizedType.getActualTypeArguments()[Ljava/lang/reflect/Type;",
    "java/lang/reflect/ParameterizedType.getRawType()Ljava/lang/reflect/Type;",
    ("java/lang/reflect/Proxy.newProxyInstance(Ljava/lang/ClassLoader;[Ljava/lang/Class;Ljava/lang/reflect/"
     "InvocationHandler;)Ljava/lang/Object;"),
    "java/lang/reflect/TypeVariable.getBounds()[Ljava/lang/reflect/Type;",
    "java/util/Arrays.equals([Ljava/lang/Object;[Ljava/lang/Object;)Z",
    "java/util/HashMap.<init>()V",
    "java/util/Map.containsKey(Ljava/lang/Object;)Z",
    "java/util/Map.get(Ljava/lang/Object;)Ljava/lang/Object;",
    "java/util/Map.put(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;",
};
constexpr const char* const Classes[] = {
    "java/lang/Boolean",
    "java/lang/Byte",
    "java/lang/Character",
    "java/lang/Class",
    "java/lang/ClassCastException",
    "java/lang/Double",
    "java/lang/Float",
    "java/lang/Integer",
    "java/lang/Long",
    "java/lang/NullPointerException",
    "java/lang/Object",
    "java/lang/Runnable",
    "java/lang/Short",
    "java/lang/String",
    "java/lang/StringBuilder",
    "java/lang/System",
    "java/lang/Throwable",
    "java/lang/UnsupportedOperationException",
    "java/lang/reflect/Array",
    "java/lang/reflect/GenericArrayType",
    "java/lang/reflect/InvocationHandler",
    "java/lang/reflect/Method",
    "java/lang/reflect/ParameterizedType",
    "java/lang/reflect/Proxy",
    "java/lang/reflect/Type",
    "java/lang/reflect/TypeVariable",
    "java/util/Arrays",
    "java/util/HashMap",
    "java/util/Map",
};

TEST(HandlerBytesTest, NamesNothingThatJava8DoesNotHave) {
  const ClassFile file;
  EXPECT_THAT(file.Members(), testing::UnorderedElementsAreArray(Members));
  EXPECT_THAT(file.Classes(), testing::UnorderedElementsAreArray(Classes));
}

}  // namespace
}  // namespace tests
