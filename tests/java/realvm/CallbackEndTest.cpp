// C++ called from Java while its VM ends.
#include <fstream>
#include <functional>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::Implement;
using java::Local;
using java::Misuse;
using java::NativeMethod;
using java::Object;
using java::Ref;
using java::StartVm;
using java::StaticMethod;
using java::Vm;
using java::VmEnd;

struct Natives {
  static constexpr char JavaName[] = "fixture/Natives";
};
struct List {
  static constexpr char JavaName[] = "java/util/List";
};

// What a shutdown hook, which `prepare` makes, writes into its file.
void ExpectAtTheEnd(const std::string& expected, const std::function<void(const std::string& path)>& prepare) {
  const Note note;
  InOwnProcess([&] {
    Vm vm = StartVm(FixtureSettings());
    prepare(note.Path());
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), expected);
  });
}

TEST(CallbackEndTest, AFunctionRunsInAShutdownHookButDoesNotCall) {
  ExpectAtTheEnd("ran: The Java VM has ended", [](const std::string& path) {
    RunAtTheEnd([path] { std::ofstream(path) << "ran: " << WhatOf<Misuse>([] { Abs(-1); }); });
  });
}

// They are Java's, although the object is C++'s.
TEST(CallbackEndTest, DefaultMethodsRunInAShutdownHook) {
  ExpectAtTheEnd("then", [](const std::string& path) {
    constexpr StaticMethod<void(Ref<Function>, std::string_view)> thenAtTheEnd{"fixture/Callbacks", "thenAtTheEnd"};
    thenAtTheEnd([](Ref<Object>) { return Local<Object>(); }, path);
  });
}

TEST(CallbackEndTest, DefaultMethodsOfNumbersRunInAShutdownHook) {
  ExpectAtTheEnd("-40", [](const std::string& path) {
    constexpr StaticMethod<void(Ref<Shape>, std::string_view)> scaledAtTheEnd{"fixture/Callbacks", "scaledAtTheEnd"};
    scaledAtTheEnd(Implement<Shape>().On("area", [] { return 4.0; }), path);
  });
}

TEST(CallbackEndTest, ValuesComeAndGoInAShutdownHook) {
  constexpr StaticMethod<void(Ref<Function>, Ref<Object>, std::string_view)> applyAtTheEnd{"fixture/Callbacks",
                                                                                           "applyAtTheEnd"};
  ExpectAtTheEnd("42", [&](const std::string& path) {
    applyAtTheEnd([](std::optional<jint> number) { return std::optional<jint>(*number + 1); }, NewInteger(41), path);
  });
  ExpectAtTheEnd("text!", [&](const std::string& path) {
    applyAtTheEnd([](std::string_view text) { return std::string(text) + "!"; }, NewText("text"), path);
  });
  ExpectAtTheEnd(
      "java.lang.ClassCastException: argument 1 of public abstract java.lang.Object "
      "java.util.function.Function.apply(java.lang.Object) is a java.lang.String, and the C++ function takes "
      "a java.lang.Integer",
      [&](const std::string& path) {
        applyAtTheEnd([](std::optional<jint> number) { return number; }, NewText("text"), path);
      });
}

TEST(CallbackEndTest, NativeMethodsRefuseWrongObjectsInAShutdownHook) {
  ExpectAtTheEnd(
      "java.lang.ClassCastException: argument 1 of fixture.Natives.takes(java.lang.Object) is a java.lang.String, and "
      "the C++ function takes a java.util.List; java.lang.ClassCastException: the C++ function of "
      "fixture.Natives.self() returned a java.lang.String, and the method returns a fixture.Natives",
      [](const std::string& path) {
        NativeMethod<void(Ref<List>)>("fixture/Natives", "takes", "(Ljava/lang/Object;)V").Bind([](Ref<List>) {});
        const NativeMethod<java::Global<Object>(), Natives> self("fixture/Natives", "self", "()Lfixture/Natives;");
        self.Bind([text = java::Global<Object>(NewText("text"))](Ref<Natives>) { return text; });
        constexpr java::Constructor<Natives(jint)> make;
        constexpr StaticMethod<void(Ref<Natives>, std::string_view)> throwAtTheEnd{"fixture/Natives", "throwAtTheEnd"};
        throwAtTheEnd(make(0), path);
      });
}

}  // namespace
}  // namespace tests
