#include "java/runtimes/Choice.h"

#include <torvan/java/Failure.h>

#include "java/PathText.h"
#include "java/runtimes/Search.h"

namespace torvan::java::detail {
namespace {

std::string TextOfNone(const VersionRange& versions, const Runtimes& runtimes, const std::vector<std::string>& looked) {
  std::string text = "No Java runtime that will do was found (" + versions.ToString() + ")";
  if (!runtimes.found.empty()) text += "\nFound, but of another version:";
  for (const Runtime& runtime : runtimes.found) {
    text += "\n  " + ToText(runtime.Home()) + ": " + runtime.Version().ToString();
  }
  if (!runtimes.refused.empty()) text += "\nRefused:";
  for (const RefusedRuntime& refused : runtimes.refused) {
    text += "\n  " + ToText(refused.Home()) + ": " + refused.Reason();
    text += " (" + refused.FoundIn() + ")";
  }
  text += "\nLooked at:";
  for (const std::string& place : looked) text += "\n  " + place;
  return text;
}

}  // namespace

Runtime Choose(const Machine& machine, const VersionRange& versions) {
  Search search(machine);
  search.LookEverywhere();
  const Runtimes runtimes = search.Result();
  for (const Runtime& runtime : runtimes.found) {
    if (versions.Contains(runtime.Version())) return runtime;
  }
  throw StartFailure("java/runtimes/Choice", __LINE__, TextOfNone(versions, runtimes, search.Looked()));
}

}  // namespace torvan::java::detail
