#include "java/Spelling.h"

#include <torvan/java/detail/Descriptor.h>

#include <algorithm>

namespace torvan::java::detail {

namespace {

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

const char* SpellLetter(char letter) {
  switch (letter) {
    case 'Z':
      return "boolean";
    case 'B':
      return "byte";
    case 'C':
      return "char";
    case 'S':
      return "short";
    case 'I':
      return "int";
    case 'J':
      return "long";
    case 'F':
      return "float";
    case 'D':
      return "double";
    default:
      return "void";
  }
}

std::vector<std::string> SpellTypes(std::vector<std::string> descriptors) {
  for (std::string& descriptor : descriptors) descriptor = SpellType(descriptor);
  return descriptors;
}

}  // namespace

DescriptorParts Split(const char* descriptor) {
  DescriptorParts parts;
  if (*descriptor == '(') {
    for (++descriptor; *descriptor != ')';) {
      const char* const next = SkipType(descriptor);
      parts.arguments.emplace_back(descriptor, next);
      descriptor = next;
    }
    ++descriptor;
  }
  parts.result = descriptor;
  return parts;
}

std::string Dotted(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), '/', '.');
  return text;
}

std::string SpellType(std::string_view descriptor) {
  if (descriptor.front() == '[') return SpellType(descriptor.substr(1)) + "[]";
  if (descriptor.front() == 'L') return Dotted(descriptor.substr(1, descriptor.size() - 2));
  return SpellLetter(descriptor.front());
}

char LetterOf(const std::string& spelled) {
  for (const char letter : {'Z', 'B', 'C', 'S', 'I', 'J', 'F', 'D', 'V'}) {
    if (spelled == SpellLetter(letter)) return letter;
  }
  return 'L';
}

std::string Spell(const MemberName& name) {
  if (IsField(name.kind)) return name.name;
  const std::string arguments = "(" + Joined(SpellTypes(Split(name.descriptor).arguments)) + ")";
  return (name.kind == MemberKind::Constructor ? Dotted(name.type) : name.name) + arguments;
}

std::string SpellWithClass(const MemberName& name) {
  return name.kind == MemberKind::Constructor ? Spell(name) : Dotted(name.type) + "." + Spell(name);
}

std::string SpellDeclared(MemberKind kind, const std::string& result, const std::string& name,
                          const std::vector<std::string>& arguments) {
  std::string text = IsStatic(kind) ? "static " : "";
  if (kind != MemberKind::Constructor) text += result + " ";
  text += name;
  return IsField(kind) ? text : text + "(" + Joined(arguments) + ")";
}

std::string SpellList(std::vector<std::string> texts) {
  std::sort(texts.begin(), texts.end());
  return Joined(texts);
}

}  // namespace torvan::java::detail
