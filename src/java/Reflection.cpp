#include "java/Reflection.h"

#include <torvan/java/Cast.h>
#include <torvan/java/LocalFrame.h>

#include <algorithm>

#include "java/ClassNames.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

namespace {

struct ReflectedField {
  static constexpr char JavaName[] = "java/lang/reflect/Field";
};
struct ReflectedMember {
  static constexpr char JavaName[] = "java/lang/reflect/Member";
};
struct Loader {
  static constexpr char JavaName[] = "java/lang/ClassLoader";
};

using GetArray = Method<Class, Local<Object>()>;
constexpr GetArray GetDeclaredMethods{"getDeclaredMethods", "()[Ljava/lang/reflect/Method;"};
constexpr GetArray GetMethods{"getMethods", "()[Ljava/lang/reflect/Method;"};
constexpr GetArray GetDeclaredConstructors{"getDeclaredConstructors", "()[Ljava/lang/reflect/Constructor;"};
constexpr GetArray GetDeclaredFields{"getDeclaredFields", "()[Ljava/lang/reflect/Field;"};
constexpr GetArray GetFields{"getFields", "()[Ljava/lang/reflect/Field;"};
constexpr Method<Class, std::string()> GetTypeName{"getTypeName"};
constexpr Method<Class, Local<Class>()> GetSuperclass{"getSuperclass"};
constexpr Method<Class, std::vector<Local<Class>>()> GetInterfaces{"getInterfaces"};
constexpr Method<Class, Local<Loader>()> GetClassLoader{"getClassLoader"};
constexpr Method<Loader, Local<Loader>()> GetParent{"getParent"};

constexpr Method<ReflectedMember, std::string()> GetName{"getName"};
constexpr Method<ReflectedMember, jint()> GetModifiers{"getModifiers"};
constexpr Method<ReflectedMember, bool()> IsSynthetic{"isSynthetic"};
constexpr Method<Reflected, Local<Object>()> GetParameterTypes{"getParameterTypes", "()[Ljava/lang/Class;"};
constexpr Method<ReflectedMethod, Local<Class>()> GetReturnType{"getReturnType"};
constexpr Method<ReflectedField, Local<Class>()> GetType{"getType"};

template <typename T, typename Use>
void ForEach(JNIEnv* env, const Local<Object>& array, Use use) {
  const auto elements = static_cast<jobjectArray>(array.Get());
  const jsize size = env->GetArrayLength(elements);
  for (jsize i = 0; i < size; ++i) use(Own<T>(env, env->GetObjectArrayElement(elements, i)));
}

Candidate Describe(JNIEnv* env, jclass type, MemberKind kind, std::string name, Local<ReflectedMember> member) {
  Candidate candidate{};
  candidate.modifiers = GetModifiers(member);
  const bool isStatic = (candidate.modifiers & StaticModifier) != 0;
  if (IsField(kind)) {
    candidate.kind = isStatic ? MemberKind::StaticField : MemberKind::Field;
    candidate.resultClass = GetType(Cast<ReflectedField>(member));
  } else {
    ForEach<Class>(env, GetParameterTypes(Cast<Reflected>(member)), [&](Local<Class> argument) {
      candidate.arguments.push_back(GetTypeName(argument));
      candidate.argumentClasses.push_back(std::move(argument));
    });
    if (kind == MemberKind::Constructor) {
      candidate.kind = kind;
      name = GetTypeName(type);
    } else {
      candidate.kind = isStatic ? MemberKind::StaticMethod : MemberKind::Method;
      candidate.resultClass = GetReturnType(Cast<ReflectedMethod>(member));
    }
  }
  if (candidate.resultClass) candidate.result = GetTypeName(candidate.resultClass);
  candidate.spelled = SpellDeclared(candidate.kind, candidate.result, name, candidate.arguments);
  candidate.name = std::move(name);
  candidate.reflected = std::move(member);
  return candidate;
}

void Collect(JNIEnv* env, jclass type, MemberKind kind, const char* name, const Local<Object>& array,
             std::vector<Candidate>& candidates) {
  ForEach<ReflectedMember>(env, array, [&](Local<ReflectedMember> member) {
    if (IsSynthetic(member)) return;  // bridges, too
    std::string own = GetName(member);
    if (kind != MemberKind::Constructor && name != nullptr && own != name) return;
    Candidate candidate = Describe(env, type, kind, std::move(own), std::move(member));
    const bool isHidden = std::any_of(candidates.begin(), candidates.end(), [&](const Candidate& other) {
      return other.name == candidate.name && other.arguments == candidate.arguments;
    });
    if (!isHidden) candidates.push_back(std::move(candidate));
  });
}

}  // namespace

std::vector<Candidate> CandidatesOf(JNIEnv* env, jclass type, MemberKind kind, const char* name) {
  std::vector<Candidate> candidates;
  if (kind == MemberKind::Constructor) {
    Collect(env, type, kind, name, GetDeclaredConstructors(type), candidates);
    return candidates;
  }
  const GetArray& getDeclared = IsField(kind) ? GetDeclaredFields : GetDeclaredMethods;
  const GetArray& getPublic = IsField(kind) ? GetFields : GetMethods;
  for (Local<Class> owner(type); owner; owner = GetSuperclass(owner)) {
    Collect(env, type, kind, name, getDeclared(owner), candidates);
  }
  Collect(env, type, kind, name, getPublic(type), candidates);  // those of interfaces
  return candidates;
}

Candidate CandidateOf(JNIEnv* env, jclass type, const MemberName& name) {
  const auto id = static_cast<jmethodID>(FindId(env, type, name));
  const jboolean isStatic = IsStatic(name.kind) ? JNI_TRUE : JNI_FALSE;
  auto method = Own<ReflectedMember>(env, env->ToReflectedMethod(type, id, isStatic));
  CheckPending(env);
  return Describe(env, type, name.kind, name.name, std::move(method));
}

std::string Instead(JNIEnv* env, jclass type, const MemberName& name) {
  const LocalFrame frame(512);
  const DescriptorParts parts = Split(name.descriptor);
  std::vector<std::string> arguments;
  for (const std::string& argument : parts.arguments) arguments.push_back(SpellType(argument));
  const bool isConstructor = name.kind == MemberKind::Constructor;
  const std::string missing =
      SpellDeclared(name.kind, SpellType(parts.result), isConstructor ? Dotted(name.type) : name.name, arguments);

  std::vector<std::string> others;
  for (const Candidate& candidate : CandidatesOf(env, type, name.kind, name.name)) {
    const bool isOnlyStatic = candidate.arguments == arguments && candidate.result == SpellType(parts.result) &&
                              IsStatic(candidate.kind) != IsStatic(name.kind);
    if (isOnlyStatic && !isConstructor) {
      const std::string what = IsField(name.kind) ? "Field" : "Method";
      return " (" + candidate.spelled + " of " + GetTypeName(type) +
             (IsStatic(candidate.kind) ? " is static: declare it as Static" + what
                                       : " is not static: declare it as " + what) +
             ")";
    }
    others.push_back(candidate.spelled);
  }
  return " (" + GetTypeName(type) + " has no " + missing +
         (others.empty() ? ", and nothing else of that name)" : "; it has " + SpellList(others) + ")");
}

Local<Object> LoaderOf(const Ref<Class>& type) { return GetClassLoader(type); }

namespace {

// Whether a class, or what it extends or implements, has that name.
bool Extends(JNIEnv* env, const Ref<Class>& type, const std::string& wanted) {
  if (!type) return false;
  if (NameOf(env, static_cast<jclass>(type.Get())) == wanted || Extends(env, GetSuperclass(type), wanted)) return true;
  const std::vector<Local<Class>> interfaces = GetInterfaces(type);
  return std::any_of(interfaces.begin(), interfaces.end(),
                     [&](const Local<Class>& each) { return Extends(env, each, wanted); });
}

}  // namespace

std::string MisfitOf(JNIEnv* env, jclass type, const char* tag) {
  const std::string wanted = Dotted(tag);
  if (wanted == "java.lang.Object" || Extends(env, Ref<Class>(type), wanted)) return {};
  return "the tag names " + wanted + ", and a " + NameOf(env, type) + " is none";
}

bool IsOtherLoader(const Ref<Object>& loader) {
  if (!loader) return false;
  for (Local<Loader> own{Ref<Loader>(KeptLoader())}; own; own = GetParent(own)) {
    if (Same(own, loader)) return false;
  }
  return true;
}

}  // namespace torvan::java::detail
