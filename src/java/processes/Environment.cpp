#include "java/processes/Environment.h"

#include <algorithm>

#include "java/processes/Surroundings.h"

namespace torvan::java::detail {

void Change(std::vector<NativeText>& environment, const EnvironmentChange& change) {
  const NativeText prefix = ToNative(change.name + "=");
  const auto isIt = [&prefix](const NativeText& variable) { return IsSameVariable(prefix, variable); };
  environment.erase(std::remove_if(environment.begin(), environment.end(), isIt), environment.end());
  if (change.value) environment.push_back(prefix + ToNative(*change.value));
}

std::vector<NativeText> EnvironmentOf(const ProgramSettings& settings) {
  std::vector<NativeText> environment;
  if (!settings.clearEnvironment) environment = OwnEnvironment();
  for (const EnvironmentChange& change : settings.environment) Change(environment, change);
  CompleteEnvironment(environment, settings.environment);
  return environment;
}

}  // namespace torvan::java::detail
