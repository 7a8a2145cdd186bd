#include "jni/AccessorMembers.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <tuple>
#include <utility>

#include "fakes/Text.h"
#include "jni/AccessorSamples.h"

#if defined(__GNUC__)
// va_list is an attributed type on some systems, and slots that take one are template arguments here.
#pragma GCC diagnostic ignored "-Wignored-attributes"
#endif

namespace accessors {

namespace {

using fakes::Jni;

// What a slot gives, and what it takes last.
template <typename Function>
struct SlotOf;
template <typename Result, typename... Arguments>
struct SlotOf<Result (JNICALL* Jni::*)(Arguments...)> {
  using Given = Result;
  using Taken = std::tuple_element_t<sizeof...(Arguments) - 1, std::tuple<Arguments...>>;
};

template <typename Unit>
auto Spell(const std::string& text) {
  if constexpr (std::is_same_v<Unit, char>) {
    return text;
  } else {
    return fakes::Widen(text);
  }
}

template <typename Host, typename Value>
void ExpectArrived(const Host& host, Value value) {
  if constexpr (std::is_same_v<Value, jobject>) {
    EXPECT_EQ(fakes::Describe(static_cast<jobject>(host)), value == nullptr ? "null" : "global:3");
  } else {
    EXPECT_EQ(Bits(host), Bits(static_cast<Host>(value)));
  }
}

// Arguments below int come as int, float comes as double.
template <typename Value>
Value NextArgument(va_list arguments) {
  if constexpr (std::is_same_v<Value, jfloat>) {
    return static_cast<jfloat>(va_arg(arguments, double));
  } else {
    return static_cast<Value>(va_arg(arguments, decltype(+std::declval<Value>())));
  }
}

template <typename Value>
std::vector<std::string> AsShown() {
  std::vector<std::string> shown;
  for (const Sample<Value>& sample : samples<Value>) shown.push_back(sample.shown);
  return shown;
}

template <typename Unit, auto Slot, typename Use>
void AddGetter(std::vector<Member>& members, Member member, Use use) {
  using Value = typename SlotOf<decltype(Slot)>::Given;
  member.givesObject = std::is_same_v<Value, jobject>;
  member.given.assign(samples<Value>.size(), "");
  member.script = [](const Target& target, std::size_t sample) {
    target.jvm.On<Slot>([value = FromJava<Value>(target, sample)](auto...) { return value; });
  };
  member.use = [use, signature = Spell<Unit>(member.signature)](const Target& target, const std::string& javaName,
                                                                std::size_t sample) {
    ExpectArrived(use(target, Spell<Unit>(javaName).c_str(), signature.c_str()), FromJava<Value>(target, sample));
  };
  members.push_back(std::move(member));
}

template <typename Unit, auto Slot, typename Use>
void AddSetter(std::vector<Member>& members, Member member, Use use) {
  using Value = typename SlotOf<decltype(Slot)>::Taken;
  member.given = AsShown<Value>();
  if (std::is_same_v<Value, jobject>) member.given[0] = "global:3";
  member.script = [](const Target& target, std::size_t sample) {
    target.jvm.On<Slot>([bits = Bits<Value>(FromHost<Value>(target, sample))](auto, auto, auto value) {
      EXPECT_EQ(Bits(value), bits);
    });
  };
  member.use = [use, signature = Spell<Unit>(member.signature)](const Target& target, const std::string& javaName,
                                                                std::size_t sample) {
    use(target, Spell<Unit>(javaName).c_str(), signature.c_str(), FromHost<Value>(target, sample));
  };
  members.push_back(std::move(member));
}

// The Java method gives back the one argument that it takes.
template <typename Unit, auto Slot, typename Use>
void AddCaller(std::vector<Member>& members, Member member, Use use) {
  using Value = typename SlotOf<decltype(Slot)>::Given;
  member.signature = std::is_void_v<Value> ? "()V" : "(" + member.signature + ")" + member.signature;
  const auto signature = Spell<Unit>(member.signature);
  if constexpr (std::is_void_v<Value>) {
    member.given = {""};
    member.script = [](const Target& target, std::size_t) { target.jvm.On<Slot>([](auto...) {}); };
    member.use = [use, signature](const Target& target, const std::string& javaName, std::size_t) {
      use(target, Spell<Unit>(javaName).c_str(), signature.c_str());
    };
  } else {
    member.givesObject = std::is_same_v<Value, jobject>;
    member.given = AsShown<Value>();
    member.script = [](const Target& target, std::size_t) {
      target.jvm.On<Slot>(
          [](auto... all) { return NextArgument<Value>(std::get<sizeof...(all) - 1>(std::make_tuple(all...))); });
    };
    member.use = [use, signature](const Target& target, const std::string& javaName, std::size_t sample) {
      const auto value = FromJava<Value>(target, sample);
      ExpectArrived(use(target, Spell<Unit>(javaName).c_str(), signature.c_str(), value), value);
    };
  }
  members.push_back(std::move(member));
}

// Adds both overloads of a member of `handle`: its name, the JNI function that must do it, the type of the Java member.
// clang-format off
#define ADD(Kind, handle, name, slot, type)                                                                      \
  const auto use##name = [](const Target& t, auto... all) -> decltype(auto) { return t.handle.name(all...); };   \
  Add##Kind<char, &Jni::slot>(members, {#name, false, #slot, type, false, {}, {}, {}}, use##name);               \
  Add##Kind<RX::UniChar, &Jni::slot>(members, {#name, true, #slot, type, false, {}, {}, {}}, use##name);
#define GETTER(handle, name, slot, type) ADD(Getter, handle, name, slot, type)
#define SETTER(handle, name, slot, type) ADD(Setter, handle, name, slot, type)
#define CALLER(handle, name, slot, type) ADD(Caller, handle, name, slot, type)

std::vector<Member> MakeMembers() {
  std::vector<Member> members;
  GETTER(object,    GetObjectField,              GetObjectField,               "Ljava/lang/Object;")
  GETTER(object,    GetBooleanField,             GetBooleanField,              "Z")
  GETTER(object,    GetByteField,                GetByteField,                 "B")
  GETTER(object,    GetCharField,                GetCharField,                 "C")
  GETTER(object,    GetShortField,               GetShortField,                "S")
  GETTER(object,    GetIntField,                 GetIntField,                  "I")
  GETTER(object,    GetLongField,                GetLongField,                 "J")
  GETTER(object,    GetFloatField,               GetFloatField,                "F")
  GETTER(object,    GetDoubleField,              GetDoubleField,               "D")

  SETTER(object,    SetObjectField,              SetObjectField,               "Ljava/lang/Object;")
  SETTER(object,    SetBooleanField,             SetBooleanField,              "Z")
  SETTER(object,    SetByteField,                SetByteField,                 "B")
  SETTER(object,    SetCharField,                SetCharField,                 "C")
  SETTER(object,    SetShortField,               SetShortField,                "S")
  SETTER(object,    SetIntField,                 SetIntField,                  "I")
  SETTER(object,    SetLongField,                SetLongField,                 "J")
  SETTER(object,    SetFloatField,               SetFloatField,                "F")
  SETTER(object,    SetDoubleField,              SetDoubleField,               "D")

  CALLER(object,    CallObjectMethod,            CallObjectMethodV,            "Ljava/lang/Object;")
  CALLER(object,    CallBooleanMethod,           CallBooleanMethodV,           "Z")
  CALLER(object,    CallByteMethod,              CallByteMethodV,              "B")
  CALLER(object,    CallCharMethod,              CallCharMethodV,              "C")
  CALLER(object,    CallShortMethod,             CallShortMethodV,             "S")
  CALLER(object,    CallIntMethod,               CallIntMethodV,               "I")
  CALLER(object,    CallLongMethod,              CallLongMethodV,              "J")
  CALLER(object,    CallFloatMethod,             CallFloatMethodV,             "F")
  CALLER(object,    CallDoubleMethod,            CallDoubleMethodV,            "D")
  CALLER(object,    CallVoidMethod,              CallVoidMethodV,              "V")

  CALLER(object,    CallNonvirtualObjectMethod,  CallNonvirtualObjectMethodV,  "Ljava/lang/Object;")
  CALLER(object,    CallNonvirtualBooleanMethod, CallNonvirtualBooleanMethodV, "Z")
  CALLER(object,    CallNonvirtualByteMethod,    CallNonvirtualByteMethodV,    "B")
  CALLER(object,    CallNonvirtualCharMethod,    CallNonvirtualCharMethodV,    "C")
  CALLER(object,    CallNonvirtualShortMethod,   CallNonvirtualShortMethodV,   "S")
  CALLER(object,    CallNonvirtualIntMethod,     CallNonvirtualIntMethodV,     "I")
  CALLER(object,    CallNonvirtualLongMethod,    CallNonvirtualLongMethodV,    "J")
  CALLER(object,    CallNonvirtualFloatMethod,   CallNonvirtualFloatMethodV,   "F")
  CALLER(object,    CallNonvirtualDoubleMethod,  CallNonvirtualDoubleMethodV,  "D")
  CALLER(object,    CallNonvirtualVoidMethod,    CallNonvirtualVoidMethodV,    "V")

  GETTER(javaClass, GetStaticObjectField,        GetStaticObjectField,         "Ljava/lang/Object;")
  GETTER(javaClass, GetStaticBooleanField,       GetStaticBooleanField,        "Z")
  GETTER(javaClass, GetStaticByteField,          GetStaticByteField,           "B")
  GETTER(javaClass, GetStaticCharField,          GetStaticCharField,           "C")
  GETTER(javaClass, GetStaticShortField,         GetStaticShortField,          "S")
  GETTER(javaClass, GetStaticIntField,           GetStaticIntField,            "I")
  GETTER(javaClass, GetStaticLongField,          GetStaticLongField,           "J")
  GETTER(javaClass, GetStaticFloatField,         GetStaticFloatField,          "F")
  GETTER(javaClass, GetStaticDoubleField,        GetStaticCharField,           "D")

  SETTER(javaClass, SetStaticObjectField,        SetStaticObjectField,         "Ljava/lang/Object;")
  SETTER(javaClass, SetStaticBooleanField,       SetStaticBooleanField,        "Z")
  SETTER(javaClass, SetStaticByteField,          SetStaticByteField,           "B")
  SETTER(javaClass, SetStaticCharField,          SetStaticCharField,           "C")
  SETTER(javaClass, SetStaticShortField,         SetStaticShortField,          "S")
  SETTER(javaClass, SetStaticIntField,           SetStaticIntField,            "I")
  SETTER(javaClass, SetStaticLongField,          SetStaticLongField,           "J")
  SETTER(javaClass, SetStaticFloatField,         SetStaticFloatField,          "F")
  SETTER(javaClass, SetStaticDoubleField,        SetStaticDoubleField,         "D")

  CALLER(javaClass, CallStaticObjectMethod,      CallStaticObjectMethodV,      "Ljava/lang/Object;")
  CALLER(javaClass, CallStaticBooleanMethod,     CallStaticBooleanMethodV,     "Z")
  CALLER(javaClass, CallStaticByteMethod,        CallStaticByteMethodV,        "B")
  CALLER(javaClass, CallStaticCharMethod,        CallStaticCharMethodV,        "C")
  CALLER(javaClass, CallStaticShortMethod,       CallStaticShortMethodV,       "S")
  CALLER(javaClass, CallStaticIntMethod,         CallStaticIntMethodV,         "I")
  CALLER(javaClass, CallStaticLongMethod,        CallStaticLongMethodV,        "J")
  CALLER(javaClass, CallStaticFloatMethod,       CallStaticFloatMethodV,       "F")
  CALLER(javaClass, CallStaticDoubleMethod,      CallStaticDoubleMethodV,      "D")
  CALLER(javaClass, CallStaticVoidMethod,        CallStaticVoidMethodV,        "V")
  return members;
}
// clang-format on
#undef CALLER
#undef SETTER
#undef GETTER
#undef ADD

}  // namespace

const std::vector<Member>& AllMembers() {
  static const std::vector<Member> members = MakeMembers();
  return members;
}

}  // namespace accessors
