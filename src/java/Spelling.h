// Members as Java spells them.
#pragma once

#include <torvan/java/detail/Member.h>

#include <string>
#include <string_view>
#include <vector>

namespace torvan::java::detail {

// The descriptors of a descriptor's arguments, and of its result or field.
struct DescriptorParts {
  std::vector<std::string> arguments;
  std::string result;
};
DescriptorParts Split(const char* descriptor);

// "java/lang/String" and "java.lang.String" as "java.lang.String".
std::string Dotted(std::string_view name);

// "[Ljava/lang/String;" as "java.lang.String[]".
std::string SpellType(std::string_view descriptor);

// The letter of a type as Java spells it; 'L' of every class and array.
char LetterOf(const std::string& spelled);

// "add(int, java.lang.Object)"; "fixture.Made(int)" for a constructor, which has the class's name; "count" for a field.
std::string Spell(const MemberName& name);

// The same with the class before it: "java.util.List.add(int, java.lang.Object)".
std::string SpellWithClass(const MemberName& name);

// "static int max(int, int)", "fixture.Made(int)", "static long count".
std::string SpellDeclared(MemberKind kind, const std::string& result, const std::string& name,
                          const std::vector<std::string>& arguments);

// "a, b, c", in the order of the alphabet.
std::string SpellList(std::vector<std::string> texts);

}  // namespace torvan::java::detail
