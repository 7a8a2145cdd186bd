#include <torvan/java/Runtimes.h>

#include <torvan/java/Failure.h>

#include <utility>

#include "java/PathText.h"
#include "java/runtimes/Choice.h"
#include "java/runtimes/Search.h"

namespace torvan::java {

using detail::Search;
using detail::ToText;

Runtime::Runtime(detail::RuntimeFacts facts) : m_facts(std::move(facts)) {}

RefusedRuntime::RefusedRuntime(std::filesystem::path home, std::string reason, std::string foundIn)
    : m_home(std::move(home)), m_reason(std::move(reason)), m_foundIn(std::move(foundIn)) {}

Runtimes FindRuntimes() {
  Search search(detail::ThisMachine());
  search.LookEverywhere();
  return search.Result();
}

Runtimes FindRuntimes(const std::filesystem::path& folder) {
  Search search(detail::ThisMachine());
  search.LookInto(folder);
  return search.Result();
}

Runtime RuntimeIn(const std::filesystem::path& home) {
  Search search(detail::ThisMachine());
  search.LookAt(home, ToText(home));
  const Runtimes runtimes = search.Result();
  if (!runtimes.found.empty()) return runtimes.found.front();
  const RefusedRuntime& refused = runtimes.refused.front();
  const std::string place = ToText(refused.Home());
  throw StartFailure("java/Runtimes", __LINE__,
                     "No Java runtime that will do is in " + place + ": " + refused.Reason());
}

Runtime ChooseRuntime(const VersionRange& versions) { return detail::Choose(detail::ThisMachine(), versions); }

}  // namespace torvan::java
