#include <torvan/java/Implement.h>

#include <torvan/java/Elements.h>
#include <torvan/java/Failure.h>
#include <torvan/java/LocalFrame.h>
#include <torvan/java/Method.h>
#include <torvan/java/detail/NewObject.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

#include "java/ClassNames.h"
#include "java/Handler.h"
#include "java/Matching.h"
#include "java/Reflection.h"

namespace torvan::java::detail {

namespace {

struct ClassArray {
  static constexpr char JavaName[] = "[Ljava/lang/Class;";
};

}  // namespace

struct HandlerTexts {
  std::vector<std::string> names;
  std::vector<std::string> letters;
};

// What all objects of an interface with functions of the same types share.
struct HandlerPlan {
  Global<Object> handler;
  std::shared_ptr<const HandlerTexts> texts;
};

struct PlanPlace {
  std::mutex mutex;
  std::shared_ptr<const HandlerPlan> plan;
};

namespace {

// The C++ functions of one Java object. Lives as long as that object, and keeps nothing of Java alive.
struct Functions final : OwnedByJava {
  Functions(std::shared_ptr<const HandlerTexts> itsTexts, const std::vector<GivenFunction>& given)
      : texts(std::move(itsTexts)) {
    for (std::size_t i = 0; i < given.size(); ++i) {
      kept.push_back(given[i].function);
      Callback& function = *given[i].function;
      handled.push_back({function.ItsEntry(), &function, texts->names[i].c_str(), texts->letters[i].c_str(), this});
    }
  }

  std::shared_ptr<const HandlerTexts> texts;
  std::vector<std::shared_ptr<Callback>> kept;
  std::vector<HandledFunction> handled;
};

Local<Object> TestsOf(const MatchedMethod& matched) {
  if (!matched.hasTests) return nullptr;
  return NewArray(matched.tests);
}

std::shared_ptr<const HandlerPlan> MakePlan(JNIEnv* env, jclass type, jobject loader,
                                            const std::vector<GivenFunction>& functions) {
  if (!IsInterface(type)) {
    throw Misuse("java/Implement", __LINE__,
                 NameOf(env, type) + " is a class: C++ functions implement interfaces only");
  }
  const LocalFrame frame(512);
  auto texts = std::make_shared<HandlerTexts>();
  const auto arrayOf = [&](jclass element) { return Own<Object>(env, NewObjects(env, functions.size(), element)); };
  const Local<Object> methods = arrayOf(ClassOf<ReflectedMethod>(env));
  const Local<Object> kinds = arrayOf(ClassOf<String>(env));
  const Local<Object> tests = arrayOf(ClassOf<ClassArray>(env));
  jsize next = 0;
  std::set<std::string> taken;
  for (const GivenFunction& function : functions) {
    const MatchedMethod matched = FindMethod(env, type, loader, function);
    if (!taken.insert(matched.name).second) {
      throw Misuse("java/Implement", __LINE__, "two functions are given for " + matched.name);
    }
    SetElement(env, methods.Get(), next, matched.method.reflected.Get());
    const LocalScope letters(env, NewText(env, std::string_view(matched.letters)));
    SetElement(env, kinds.Get(), next, letters.Get());
    SetElement(env, tests.Get(), next++, TestsOf(matched).Get());
    texts->names.push_back(matched.name);
    texts->letters.push_back(matched.letters);
  }
  const HandlerClass& handlers = TheHandlerClass(env);
  jvalue arguments[5]{};
  arguments[0].l = type;
  arguments[1].l = methods.Get();
  arguments[2].l = kinds.Get();
  arguments[3].l = tests.Get();
  arguments[4].j = sizeof(HandledFunction);
  const Local<Object> made = Own<Object>(env, NewObject(env, handlers.type, handlers.newPlan, arguments));
  return std::make_shared<const HandlerPlan>(HandlerPlan{Global<Object>(made), std::move(texts)});
}

// Plans by the interface's name and the types of the functions, never released, like the classes of these names.
struct KeptPlans {
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<const HandlerPlan>> plans;
};
KeptPlans& TheKeptPlans() {
  static KeptPlans& kept = *new KeptPlans;
  return kept;
}

std::shared_ptr<const HandlerPlan> PlanOfClass(JNIEnv* env, jclass type, const char* tag, PlanPlace& place,
                                               const std::vector<GivenFunction>& functions) {
  {
    const std::lock_guard<std::mutex> guard(place.mutex);
    if (place.plan != nullptr) return place.plan;
  }
  const std::string misfit = MisfitOf(env, type, tag);
  if (!misfit.empty()) {
    throw Misuse("java/Implement", __LINE__, NameOf(env, type) + " cannot be implemented: " + misfit);
  }
  const Local<Object> loader = LoaderOf(type);
  std::shared_ptr<const HandlerPlan> plan =
      MakePlan(env, type, IsOtherLoader(loader) ? loader.Get() : KeptLoader(), functions);
  const std::lock_guard<std::mutex> guard(place.mutex);
  if (place.plan == nullptr) place.plan = std::move(plan);
  return place.plan;
}

std::shared_ptr<const HandlerPlan> PlanOf(JNIEnv* env, const Interface& type,
                                          const std::vector<GivenFunction>& functions) {
  if (type.type != nullptr) return PlanOfClass(env, type.type, type.name, *type.place, functions);
  if (type.place != nullptr || *type.name == '\0') {
    throw Misuse("java/Implement", __LINE__, "null is given as the interface to implement");
  }
  std::string key = type.name;
  for (const GivenFunction& function : functions) {
    key.append("\n").append(function.name).append(function.own).append(function.descriptor);
  }
  KeptPlans& kept = TheKeptPlans();
  {
    const std::lock_guard<std::mutex> guard(kept.mutex);
    const auto found = kept.plans.find(key);
    if (found != kept.plans.end()) return found->second;
  }
  // Not under the lock: classes are initialised.
  std::shared_ptr<const HandlerPlan> plan = MakePlan(env, KeptClass(env, type.name), KeptLoader(), functions);
  const std::lock_guard<std::mutex> guard(kept.mutex);
  return kept.plans.emplace(std::move(key), std::move(plan)).first->second;
}

}  // namespace

std::shared_ptr<PlanPlace> NewPlanPlace() { return std::make_shared<PlanPlace>(); }

jobject NewImplementation(JNIEnv* env, const Interface& type, const std::vector<GivenFunction>& functions) {
  const HandlerClass& handlers = TheHandlerClass(env);
  const std::shared_ptr<const HandlerPlan> plan = PlanOf(env, type, functions);
  auto owned = std::make_unique<Functions>(plan->texts, functions);
  jvalue arguments[2]{};
  arguments[0].l = plan->handler.Get();
  arguments[1].j = BitsOf(owned->handled.data());
  const LocalScope handler(env, NewObject(env, handlers.type, handlers.newHandler, arguments));
  GiveToJava(env, handler.Get(), owned.get());
  static_cast<void>(owned.release());
  jobject const made = env->CallObjectMethodA(handler.Get(), handlers.proxy, nullptr);
  CheckPending(env);
  return made;
}

void ThrowNullArgument(const char* name, std::size_t number, const std::string& path) {
  const std::string what = path.empty() ? "argument " : "element " + path + " of argument ";
  const std::string place = what + std::to_string(number) + " of " + name;
  throw Misuse("java/Implement", __LINE__, place + " is null, which its C++ type cannot be: take it as std::optional");
}

void ThrowEmptyFunction(const std::string& name) {
  throw Misuse("java/Implement", __LINE__, "an empty function is given for " + name);
}

}  // namespace torvan::java::detail
