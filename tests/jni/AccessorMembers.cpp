#include "jni/AccessorMembers.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <tuple>
#include <utility>

#include "fakes/WideText.h"
#include "jni/AccessorSamples.h"

#if defined(__GNUC__)
// va_list is an attributed type on some systems, and slots that take one are template arguments here.
#pragma GCC diagnostic ignored "-Wignored-attributes"
#endif

namespace tests {
namespace {

// A slot's result, and its last parameter.
template <typename Function>
struct SlotOf;
template <typename Result, typename... Arguments>
struct SlotOf<Result (JNICALL* Jni::*)(Arguments...)> {
  using Given = Result;
  using Taken = std::tuple_element_t<sizeof...(Arguments) - 1, std::tuple<Arguments...>>;
};
template <auto Slot>
using Given = typename SlotOf<decltype(Slot)>::Given;
template <auto Slot>
using Taken = typename SlotOf<decltype(Slot)>::Taken;

// An overload of a member as a plain function: what is built on it is compiled once for a type and not for each member,
// which saves a compiler minutes.
template <typename Host, typename Unit, typename... Values>
using Overload = Host (*)(const Target& target, const Unit* javaName, const Unit* signature, Values... values);
template <typename Use, typename Unit, typename... Values>
using ResultOf = std::invoke_result_t<Use, const Target&, const Unit*, const Unit*, Values...>;

template <typename Unit>
auto Spell(const std::string& text) {
  if constexpr (std::is_same_v<Unit, char>) {
    return text;
  } else {
    return Widen(text);
  }
}

template <typename Host, typename Value>
void ExpectArrived(const Host& host, Value value) {
  if constexpr (std::is_same_v<Value, jobject>) {
    EXPECT_EQ(Describe(static_cast<jobject>(host)), value == nullptr ? "null" : "global:3");
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

// What slots do.

template <auto Slot>
void GiveSample(const Target& target, std::size_t sample) {
  target.jvm.On<Slot>([value = FromJava<Given<Slot>>(target, sample)](auto...) { return value; });
}

template <auto Slot>
void ExpectSample(const Target& target, std::size_t sample) {
  using Value = Taken<Slot>;
  target.jvm.On<Slot>(
      [bits = Bits<Value>(FromHost<Value>(target, sample))](auto, auto, auto value) { EXPECT_EQ(Bits(value), bits); });
}

// The Java method returns its one argument.
template <auto Slot>
void GiveArgument(const Target& target, std::size_t) {
  using Value = Given<Slot>;
  if constexpr (std::is_void_v<Value>) {
    target.jvm.On<Slot>([](auto...) {});
  } else {
    target.jvm.On<Slot>(
        [](auto... all) { return NextArgument<Value>(std::get<sizeof...(all) - 1>(std::make_tuple(all...))); });
  }
}

// What a host does with an overload.

template <typename Value, typename Host, typename Unit>
auto Get(Overload<Host, Unit> overload, const std::string& signature) {
  return [=, signature = Spell<Unit>(signature)](const Target& target, const std::string& javaName,
                                                 std::size_t sample) {
    ExpectArrived(overload(target, Spell<Unit>(javaName).c_str(), signature.c_str()), FromJava<Value>(target, sample));
  };
}

template <typename Value, typename Host, typename Unit>
auto Set(Overload<void, Unit, Host> overload, const std::string& signature) {
  return
      [=, signature = Spell<Unit>(signature)](const Target& target, const std::string& javaName, std::size_t sample) {
        overload(target, Spell<Unit>(javaName).c_str(), signature.c_str(), FromHost<Value>(target, sample));
      };
}

template <typename Unit>
auto Call(Overload<void, Unit> overload, const std::string& signature) {
  return [=, signature = Spell<Unit>(signature)](const Target& target, const std::string& javaName, std::size_t) {
    overload(target, Spell<Unit>(javaName).c_str(), signature.c_str());
  };
}

template <typename Value, typename Host, typename Unit>
auto Call(Overload<Host, Unit, Value> overload, const std::string& signature) {
  return
      [=, signature = Spell<Unit>(signature)](const Target& target, const std::string& javaName, std::size_t sample) {
        const auto value = FromJava<Value>(target, sample);
        ExpectArrived(overload(target, Spell<Unit>(javaName).c_str(), signature.c_str(), value), value);
      };
}

template <typename Unit, auto Slot, typename Use>
void AddGetter(std::vector<Member>& members, Member member, Use use) {
  using Value = Given<Slot>;
  member.givesObject = std::is_same_v<Value, jobject>;
  member.given.assign(samples<Value>.size(), "");
  member.script = GiveSample<Slot>;
  member.use = Get<Value, ResultOf<Use, Unit>, Unit>(use, member.signature);
  members.push_back(std::move(member));
}

template <typename Unit, auto Slot, typename Use>
void AddSetter(std::vector<Member>& members, Member member, Use use) {
  using Value = Taken<Slot>;
  using Host = std::conditional_t<std::is_same_v<Value, jobject>, torvan::jni::CJavaObject, Value>;
  member.given = AsShown<Value>();
  if (std::is_same_v<Value, jobject>) member.given[0] = "global:3";
  member.script = ExpectSample<Slot>;
  member.use = Set<Value, Host, Unit>(use, member.signature);
  members.push_back(std::move(member));
}

template <typename Unit, auto Slot, typename Use>
void AddCaller(std::vector<Member>& members, Member member, Use use) {
  using Value = Given<Slot>;
  member.script = GiveArgument<Slot>;
  if constexpr (std::is_void_v<Value>) {
    member.signature = "()V";
    member.given = {""};
    member.use = Call<Unit>(use, member.signature);
  } else {
    member.signature = "(" + member.signature + ")" + member.signature;
    member.givesObject = std::is_same_v<Value, jobject>;
    member.given = AsShown<Value>();
    member.use = Call<Value, ResultOf<Use, Unit, Value>, Unit>(use, member.signature);
  }
  members.push_back(std::move(member));
}

// Adds both overloads of a member of `handle`: its name, the JNI function that it must call, the type of the Java
// member.
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

}  // namespace tests
