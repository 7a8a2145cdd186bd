#include "java/Matching.h"

#include <torvan/java/Failure.h>
#include <torvan/java/Method.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "java/ClassNames.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

namespace {

enum class Match { None, Loose, Exact };

// The class of a C++ type of the descriptor.
Local<Class> ClassOfType(JNIEnv* env, jobject loader, const std::string& descriptor) {
  const std::string name = descriptor[0] == 'L' ? descriptor.substr(1, descriptor.size() - 2) : descriptor;
  return Own<Class>(env, LoadClass(env, loader, name.c_str()));
}

bool IsAssignable(JNIEnv* env, const Ref<Class>& from, const Ref<Class>& to) {
  return env->IsAssignableFrom(static_cast<jclass>(from.Get()), static_cast<jclass>(to.Get())) != JNI_FALSE;
}

// Whether a C++ type, by its descriptor, goes with a type that Java declares. Loosely, when objects decide at run time.
Match MatchType(JNIEnv* env, jobject loader, const std::string& own, const std::string& spelled,
                const Local<Class>& declared) {
  if (SpellType(own) == spelled) return Match::Exact;
  if (LetterOf(spelled) != 'L' || own == "V") return Match::None;
  if (own[0] != 'L' && own[0] != '[') {
    return env->IsAssignableFrom(BoxClass(env, own[0]), static_cast<jclass>(declared.Get())) != JNI_FALSE ? Match::Loose
                                                                                                          : Match::None;
  }
  const Local<Class> wanted = ClassOfType(env, loader, own);
  const bool mayBe = IsAssignable(env, wanted, declared) || IsAssignable(env, declared, wanted) ||
                     IsInterface(wanted) || IsInterface(declared);
  return mayBe ? Match::Loose : Match::None;
}

Match MatchMethod(JNIEnv* env, jobject loader, const DescriptorParts& own, const Candidate& candidate) {
  if (own.arguments.size() != candidate.arguments.size()) return Match::None;
  Match match = MatchType(env, loader, own.result, candidate.result, candidate.resultClass);
  for (std::size_t i = 0; i < own.arguments.size() && match != Match::None; ++i) {
    match =
        std::min(match, MatchType(env, loader, own.arguments[i], candidate.arguments[i], candidate.argumentClasses[i]));
  }
  return match;
}

bool IsOfObject(const Candidate& candidate) {
  if (candidate.name == "equals") return candidate.arguments == std::vector<std::string>{"java.lang.Object"};
  return (candidate.name == "hashCode" || candidate.name == "toString") && candidate.arguments.empty();
}

// Returns the methods that a function may be for: those of its name, or without a name the abstract ones.
std::vector<Candidate> CandidatesFor(JNIEnv* env, jclass type, const GivenFunction& function) {
  const bool isNamed = !function.name.empty();
  const char* const name = isNamed ? function.name.c_str() : nullptr;
  std::vector<Candidate> candidates = CandidatesOf(env, type, MemberKind::Method, name);
  const auto drop = [&](auto isUnwanted) {
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isUnwanted), candidates.end());
  };
  drop([&](const Candidate& candidate) {
    const bool isAbstract = (candidate.modifiers & AbstractModifier) != 0;
    return candidate.kind != MemberKind::Method || (candidate.modifiers & PrivateModifier) != 0 ||
           (!isNamed && (!isAbstract || IsOfObject(candidate)));
  });
  // Every object has these three, even when its interface declares other methods of their names.
  const bool isOfObject = function.name == "equals" || function.name == "hashCode" || function.name == "toString";
  if (isOfObject && std::none_of(candidates.begin(), candidates.end(), &IsOfObject)) {
    for (Candidate& candidate : CandidatesOf(env, ClassOf<Object>(env), MemberKind::Method, name)) {
      if (IsOfObject(candidate)) candidates.push_back(std::move(candidate));
    }
  }
  return candidates;
}

std::string ListOf(const std::vector<const Candidate*>& candidates) {
  std::vector<std::string> texts;
  texts.reserve(candidates.size());
  for (const Candidate* candidate : candidates) texts.push_back(candidate->spelled);
  return SpellList(std::move(texts));
}

// A descriptor that a host passes.
DescriptorParts SplitGiven(const std::string& descriptor) {
  try {
    DescriptorParts parts = Split(descriptor.c_str());
    if (descriptor[0] == '(' && *SkipType(parts.result.c_str()) == '\0') return parts;
  } catch (const std::logic_error&) {  // reported below
  }
  throw Misuse("java/Matching", __LINE__, "\"" + descriptor + "\" is not the descriptor of a method");
}

std::string SpellFunction(const GivenFunction& function) {
  const DescriptorParts parts = function.descriptor.empty() ? Split(function.own) : SplitGiven(function.descriptor);
  std::vector<std::string> arguments;
  for (const std::string& argument : parts.arguments) arguments.push_back(SpellType(argument));
  return SpellDeclared(MemberKind::Method, SpellType(parts.result), function.name, arguments);
}

bool HasTypes(const Candidate& candidate, const DescriptorParts& given) {
  if (candidate.result != SpellType(given.result) || candidate.arguments.size() != given.arguments.size()) return false;
  for (std::size_t i = 0; i < given.arguments.size(); ++i) {
    if (candidate.arguments[i] != SpellType(given.arguments[i])) return false;
  }
  return true;
}

// Returns the method that a lambda expression implements: the abstract one that overrides all the other candidates. To
// Java, the method of a generic interface and one of more special types are the same method. Null when no candidate
// overrides all others, so that the interface is not a functional one.
const Candidate* OnlyAbstract(JNIEnv* env, const std::vector<const Candidate*>& candidates) {
  const auto overrides = [env](const Candidate& one, const Candidate& other) {
    if (one.name != other.name || one.arguments.size() != other.arguments.size()) return false;
    for (std::size_t i = 0; i < one.arguments.size(); ++i) {
      if (!IsAssignable(env, one.argumentClasses[i], other.argumentClasses[i])) return false;
    }
    return true;
  };
  for (const Candidate* candidate : candidates) {
    if (std::all_of(candidates.begin(), candidates.end(),
                    [&](const Candidate* other) { return overrides(*candidate, *other); })) {
      return candidate;
    }
  }
  return nullptr;
}

const Candidate& Choose(JNIEnv* env, jclass type, jobject loader, const GivenFunction& function,
                        const std::vector<Candidate>& candidates) {
  std::vector<const Candidate*> all;
  all.reserve(candidates.size());
  for (const Candidate& candidate : candidates) all.push_back(&candidate);
  std::vector<const Candidate*> open = all;
  if (function.name.empty()) {
    open = {OnlyAbstract(env, all)};
    if (open[0] == nullptr) {
      const std::string has = all.empty() ? "no abstract method" : ListOf(all);
      const std::string what = NameOf(env, type) + " is no functional interface: it has " + has;
      throw Misuse("java/Matching", __LINE__, what + "; give each function with Implement<T>().On(name, function)");
    }
  }
  const DescriptorParts own = Split(function.own);
  std::vector<const Candidate*> fitting;
  Match best = Match::Loose;
  for (const Candidate* candidate : open) {
    if (!function.descriptor.empty() && !HasTypes(*candidate, SplitGiven(function.descriptor))) continue;
    const Match match = MatchMethod(env, loader, own, *candidate);
    if (match < best) continue;
    if (match > best) fitting.clear();
    best = match;
    fitting.push_back(candidate);
  }
  if (fitting.size() == 1) return *fitting.front();
  const std::string name = NameOf(env, type);
  const std::string spelled = "the C++ function " + SpellFunction(function);
  const std::string has = all.empty() ? ", and objects of it have none of that name" : "; it has " + ListOf(all);
  if (fitting.empty()) throw Misuse("java/Matching", __LINE__, name + " has no method for " + spelled + has);
  const std::string several = spelled + " may be for several methods of " + name + ": " + ListOf(fitting);
  throw Misuse("java/Matching", __LINE__, several + "; say which by its descriptor");
}

}  // namespace

MatchedMethod FindMethod(JNIEnv* env, jclass type, jobject loader, const GivenFunction& function) {
  std::vector<Candidate> candidates = CandidatesFor(env, type, function);
  MatchedMethod matched{};
  const Candidate& chosen = Choose(env, type, loader, function, candidates);
  const DescriptorParts own = Split(function.own);
  const auto letter = [](const std::string& descriptor) { return descriptor[0] == '[' ? 'L' : descriptor[0]; };
  matched.letters = letter(own.result);
  for (std::size_t i = 0; i < own.arguments.size(); ++i) {
    matched.letters += letter(own.arguments[i]);
    Local<Class> test;
    if (letter(own.arguments[i]) == 'L' && SpellType(own.arguments[i]) != chosen.arguments[i]) {
      test = ClassOfType(env, loader, own.arguments[i]);
      if (IsAssignable(env, chosen.argumentClasses[i], test)) test.Reset();
    }
    matched.hasTests = matched.hasTests || test;
    matched.tests.push_back(std::move(test));
  }
  const std::string call = SpellDeclared(MemberKind::Method, "", chosen.name, chosen.arguments);
  matched.name = NameOf(env, type) + "." + call.substr(1);
  const auto place = std::find_if(candidates.begin(), candidates.end(), [&](auto& each) { return &each == &chosen; });
  matched.method = std::move(*place);
  return matched;
}

}  // namespace torvan::java::detail
