// What members a class has, by Java's reflection: for messages, and for calls that are not declared.
#pragma once

#include <torvan/java/Local.h>
#include <torvan/java/Method.h>
#include <torvan/java/detail/Member.h>

#include <string>
#include <vector>

namespace torvan::java::detail {

struct Reflected {  // a method or constructor
  static constexpr char JavaName[] = "java/lang/reflect/Executable";
};
struct ReflectedMethod {
  static constexpr char JavaName[] = "java/lang/reflect/Method";
  using Super = Reflected;
};
inline constexpr Method<Class, bool()> IsInterface{"isInterface"};

// A member of a class, its own or inherited, public or not.
struct Candidate {
  MemberKind kind;  // Method, StaticMethod, Constructor, Field or StaticField
  std::string name;
  jint modifiers;
  std::string spelled;
  std::vector<std::string> arguments;  // as Java spells them
  std::string result;                  // likewise; of a field its type
  Local<Object> reflected;             // java.lang.reflect.Method, Constructor or Field
  std::vector<Local<Class>> argumentClasses;
  Local<Class> resultClass;  // null of a constructor
};

// As java.lang.reflect.Modifier has them.
constexpr jint PrivateModifier = 0x2;
constexpr jint StaticModifier = 0x8;
constexpr jint NativeModifier = 0x100;
constexpr jint AbstractModifier = 0x400;

// The methods, static or not, or the constructors or fields of that name, the hiding or overriding ones first; null
// means any name. Throws Error when they cannot be listed, as when a class in a signature is missing.
std::vector<Candidate> CandidatesOf(JNIEnv* env, jclass type, MemberKind kind, const char* name);

// A method by its ID, which is found even where a class in another one's signature is missing. Initialises the class.
// Throws Error where it has no such method.
Candidate CandidateOf(JNIEnv* env, jclass type, const MemberName& name);

// Says what a class has instead of a member that was not found: " (java.lang.Math has no ...)". Throws as above.
std::string Instead(JNIEnv* env, jclass type, const MemberName& name);

// The loader of a class; null for the VM's own.
Local<Object> LoaderOf(const Ref<Class>& type);

// Says why objects of a class do not have the class that a tag names: "the tag names a.B, and a c.D is none". Empty
// when they have it. Loads no class.
std::string MisfitOf(JNIEnv* env, jclass type, const char* tag);

// Whether the kept loader cannot find the classes of this loader.
bool IsOtherLoader(const Ref<Object>& loader);

}  // namespace torvan::java::detail
