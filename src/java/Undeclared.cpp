#include <torvan/java/detail/Undeclared.h>

#include <torvan/java/Failure.h>
#include <torvan/java/LocalFrame.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "java/CallByLetter.h"
#include "java/ClassNames.h"
#include "java/ErrorReader.h"
#include "java/Reflection.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

namespace {

// The type that an argument has if only the object at run time shows its class.
constexpr const char* AnyObject = "Ljava/lang/Object;";

// The descriptor whose parameters are the arguments' types. An argument without a type counts as an Object.
std::string ExactDescriptor(const UndeclaredCall& call) {
  std::string text = "(";
  for (std::size_t i = 0; i < call.count; ++i) {
    const char* const descriptor = call.arguments[i].descriptor;
    text += descriptor != nullptr ? descriptor : AnyObject;
  }
  return text + ")" + (call.kind == MemberKind::Constructor ? "V" : call.result);
}

std::string ArgumentName(const GivenArgument& argument) {
  return argument.descriptor != nullptr ? SpellType(argument.descriptor) : "an object";
}

// Whether an object may be passed. Its type's name alone does not tell: another loader's class may have it.
bool IsInstanceOrNull(JNIEnv* env, const GivenArgument& argument, const Local<Class>& type) {
  jobject const object = argument.value.l;
  return object == nullptr || env->IsInstanceOf(object, static_cast<jclass>(type.Get())) != JNI_FALSE;
}

// Whether a member's arguments have the names of the types that are given.
bool HasNames(const UndeclaredCall& call, const Candidate& candidate) {
  if (candidate.arguments.size() != call.count) return false;
  for (std::size_t i = 0; i < call.count; ++i) {
    const char* const descriptor = call.arguments[i].descriptor;
    if (SpellType(descriptor != nullptr ? descriptor : AnyObject) != candidate.arguments[i]) return false;
  }
  return true;
}

bool IsExact(JNIEnv* env, const UndeclaredCall& call, const Candidate& candidate) {
  if (!HasNames(call, candidate)) return false;
  for (std::size_t i = 0; i < call.count; ++i) {
    const GivenArgument& argument = call.arguments[i];
    if (argument.descriptor == nullptr) return false;
    if (argument.letter == 'L' && !IsInstanceOrNull(env, argument, candidate.argumentClasses[i])) return false;
  }
  return true;
}

bool IsAssignable(JNIEnv* env, const GivenArgument& argument, const std::string& spelled, jclass type, bool boxing) {
  const char letter = LetterOf(spelled);
  if (argument.letter == 'L') {
    return letter == 'L' && (argument.value.l == nullptr || env->IsInstanceOf(argument.value.l, type) != JNI_FALSE);
  }
  if (letter != 'L') return Widens(argument.letter, letter);
  return boxing && env->IsAssignableFrom(BoxClass(env, argument.letter), type) != JNI_FALSE;
}

bool IsApplicable(JNIEnv* env, const UndeclaredCall& call, const Candidate& candidate, bool boxing) {
  if (candidate.arguments.size() != call.count) return false;
  for (std::size_t i = 0; i < call.count; ++i) {
    const auto type = static_cast<jclass>(candidate.argumentClasses[i].Get());
    if (!IsAssignable(env, call.arguments[i], candidate.arguments[i], type, boxing)) return false;
  }
  return true;
}

std::string SpellCall(JNIEnv* env, const UndeclaredCall& call) {
  std::string text = call.type != nullptr       ? NameOf(env, call.type)
                     : call.typeName != nullptr ? Dotted(call.typeName)
                                                : std::string();
  if (call.kind != MemberKind::Constructor) text += (text.empty() ? "" : ".") + std::string(call.name);
  text += "(";
  for (std::size_t i = 0; i < call.count; ++i) text += (i > 0 ? ", " : "") + ArgumentName(call.arguments[i]);
  return text + ")";
}

const Candidate* Choose(JNIEnv* env, const UndeclaredCall& call, const std::vector<Candidate>& candidates) {
  for (const Candidate& candidate : candidates) {
    if (candidate.kind == call.kind && IsExact(env, call, candidate)) return &candidate;
  }
  for (const bool boxing : {false, true}) {
    std::vector<const Candidate*> applicable;
    std::vector<std::string> list;
    for (const Candidate& candidate : candidates) {
      if (candidate.kind != call.kind || !IsApplicable(env, call, candidate, boxing)) continue;
      applicable.push_back(&candidate);
      list.push_back(candidate.spelled);
    }
    if (applicable.size() == 1) return applicable.front();
    if (applicable.empty()) continue;
    const std::string what = "several members take the arguments of " + SpellCall(env, call);
    throw Misuse("java/Undeclared", __LINE__, what + ": " + SpellList(list));
  }
  return nullptr;
}

// What is kept of the method that was chosen.
struct CallPlan {
  jmethodID id;
  std::vector<char> letters;  // of the parameters
  std::string result;         // as Java spells it
};

// Throws Error where no member has the names of the types that are given, else Misuse that says which argument is
// wrong.
[[noreturn]] void ThrowNone(JNIEnv* env, const UndeclaredCall& call, const std::vector<Candidate>& candidates) {
  const std::string type = NameOf(env, call.type);
  const std::string exact = ExactDescriptor(call);
  const MemberName name{call.kind, type.c_str(), call.name, exact.c_str(), exact.c_str()};
  FindId(env, call.type, name);
  std::vector<jvalue> values;
  for (std::size_t i = 0; i < call.count; ++i) values.push_back(call.arguments[i].value);
  for (const Candidate& candidate : candidates) {
    if (candidate.kind != call.kind || !HasNames(call, candidate)) continue;
    ClassTests tests;
    for (std::size_t i = 0; i < call.count; ++i) {
      if (call.arguments[i].letter == 'L') tests.arguments.emplace_back(i, candidate.argumentClasses[i]);
    }
    TestArguments(env, tests, values.data(), name);
  }
  throw Misuse("java/Undeclared", __LINE__,
               SpellWithClass(name) + " is a method that Java's compiler added: declare it as a Method to call it");
}

CallPlan MakePlan(JNIEnv* env, const UndeclaredCall& call) {
  const LocalFrame frame(512);
  const std::vector<Candidate> candidates = CandidatesOf(env, call.type, call.kind, call.name);
  const Candidate* const chosen = Choose(env, call, candidates);
  if (chosen == nullptr) ThrowNone(env, call, candidates);
  CallPlan plan{env->FromReflectedMethod(chosen->reflected.Get()), {}, chosen->result};
  for (const std::string& argument : chosen->arguments) plan.letters.push_back(LetterOf(argument));
  return plan;
}

// Makes a wider number of a number that it Widens.
jvalue Widen(jvalue value, char from, char to) {
  jvalue wide{};
  const jlong integer = from == 'B' ? value.b : from == 'S' ? value.s : from == 'I' ? value.i : 0;
  if (from == to) {
    wide = value;
  } else if (to == 'S') {
    wide.s = static_cast<jshort>(integer);
  } else if (to == 'I') {
    wide.i = static_cast<jint>(integer);
  } else if (to == 'J') {
    wide.j = integer;
  } else if (to == 'F') {
    wide.f = static_cast<jfloat>(integer);
  } else {
    wide.d = from == 'F' ? static_cast<jdouble>(value.f) : static_cast<jdouble>(integer);
  }
  return wide;
}

jvalue CallPlanned(JNIEnv* env, const UndeclaredCall& call, const CallPlan& plan) {
  const char wanted = call.result[0] == '[' ? 'L' : call.result[0];
  const char letter = call.kind == MemberKind::Constructor ? 'L' : LetterOf(plan.result);
  if (wanted != 'V' && !(wanted == 'L' ? letter == 'L' : Widens(letter, wanted))) {
    const std::string asked = ", and " + SpellType(call.result) + " is asked for";
    throw Misuse("java/Undeclared", __LINE__, SpellCall(env, call) + " returns " + plan.result + asked);
  }
  std::vector<jvalue> values(call.count + 1);
  std::vector<Passed> boxes;
  boxes.reserve(call.count);  // no box can be lost for want of memory here
  for (std::size_t i = 0; i < call.count; ++i) {
    const GivenArgument& argument = call.arguments[i];
    if (argument.letter != 'L' && plan.letters[i] == 'L') {
      boxes.emplace_back(env, Box(env, argument.letter, argument.value));
      values[i].l = boxes.back().Get();
    } else {
      values[i] = argument.letter == 'L' ? argument.value : Widen(argument.value, argument.letter, plan.letters[i]);
    }
  }
  const jvalue result = CallByLetter(env, call.kind, letter, {plan.id, call.type}, call.object, values.data());
  CheckPending(env, letter == 'L' ? result.l : nullptr);
  if (wanted != 'V') return wanted == 'L' ? result : Widen(result, letter, wanted);
  if (letter == 'L' && result.l != nullptr) env->DeleteLocalRef(result.l);
  return jvalue{};
}

// Whether the names of the arguments' types are enough to choose the method. They are not where an object may have a
// class of the same name from another loader.
bool NamesTell(const UndeclaredCall& call) {
  if (!otherLoaders.load(std::memory_order_relaxed)) {
    if (!IsOtherLoader(LoaderOf(call.type))) return true;
    otherLoaders.store(true, std::memory_order_relaxed);
  }
  const auto isJavas = [](const GivenArgument& argument) {
    return argument.letter != 'L' || argument.descriptor == nullptr ||
           std::string_view(argument.descriptor).substr(0, 6) == "Ljava/";
  };
  return std::all_of(call.arguments, call.arguments + call.count, isJavas);
}

// Tests a result that is an object for the class of the C++ type, unless the method declares that class.
void TestClass(JNIEnv* env, const UndeclaredCall& call, jobject result, const std::string& declared) {
  const std::string wanted = SpellType(call.result);
  if (result == nullptr || wanted == declared || wanted == "java.lang.Object") return;
  const bool isArray = call.result[0] == '[';
  const Local<Object> its = LoaderOf(call.type);
  jobject const loader = IsOtherLoader(its) ? its.Get() : KeptLoader();
  const LocalScope type(env, LoadClass(env, loader, isArray ? call.result : wanted.c_str()));
  RequireInstance(env, result, static_cast<jclass>(type.Get()));
}

}  // namespace

jvalue CallUndeclared(JNIEnv* env, const UndeclaredCall& call) {
  const std::string exact = ExactDescriptor(call);
  const MemberName name{call.kind, "", call.name, exact.c_str(), exact.c_str()};
  void* const id = NamesTell(call) ? FindIdOrNull(env, call.type, name) : nullptr;
  jvalue result{};
  if (id != nullptr) {
    std::vector<jvalue> values(call.count + 1);
    for (std::size_t i = 0; i < call.count; ++i) values[i] = call.arguments[i].value;
    const char letter = call.kind == MemberKind::Constructor || call.result[0] == '[' ? 'L' : call.result[0];
    result = CallByLetter(env, call.kind, letter, {static_cast<jmethodID>(id), call.type}, call.object, values.data());
    CheckPending(env, letter == 'L' ? result.l : nullptr);
  } else {
    const CallPlan plan = MakePlan(env, call);
    result = CallPlanned(env, call, plan);
    if (call.kind != MemberKind::Constructor && call.result[0] != 'V' && LetterOf(plan.result) == 'L') {
      Passed owned(env, result.l);
      TestClass(env, call, result.l, plan.result);
      owned.Release();
    }
  }
  const bool isObject = call.result[0] == 'L' || call.result[0] == '[';
  if (isObject && !call.resultHasNull && result.l == nullptr) {
    const std::string type = NameOf(env, call.type);
    ThrowNullResult({call.kind, type.c_str(), call.name, exact.c_str(), exact.c_str()});
  }
  return result;
}

jclass TypeOf(JNIEnv* env, const UndeclaredCall& call) {
  if (call.type != nullptr) return call.type;
  const bool needsObject = call.kind == MemberKind::Method;
  if (needsObject || call.typeName == nullptr) {
    throw Misuse(
        "java/Undeclared", __LINE__,
        std::string("null is given as the ") + (needsObject ? "object" : "class") + " of " + SpellCall(env, call));
  }
  try {
    return KeptClass(env, call.typeName);
  } catch (const Error& error) {
    ErrorReader::ThrowFor(error, SpellCall(env, call));
  }
}

void ThrowInvalidText(JNIEnv* env, const UndeclaredCall& call, std::size_t index, const InvalidUtf8& invalid) {
  throw Misuse("java/Undeclared", __LINE__,
               invalid.what() + (" in argument " + std::to_string(index + 1)) + " of " + SpellCall(env, call));
}

}  // namespace torvan::java::detail
