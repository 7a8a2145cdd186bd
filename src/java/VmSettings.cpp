#include <torvan/java/VmSettings.h>

namespace torvan::java {

VmSettings& VmSettings::ClassPath(const std::vector<Path>& parts) {
  m_classPath.insert(m_classPath.end(), parts.begin(), parts.end());
  return *this;
}

VmSettings& VmSettings::ModulePath(const std::vector<Path>& parts) {
  m_modulePath.insert(m_modulePath.end(), parts.begin(), parts.end());
  return *this;
}

VmSettings& VmSettings::MaximumHeap(std::string_view size) {
  m_maximumHeap = size;
  return *this;
}

VmSettings& VmSettings::Option(std::string_view option) {
  m_options.emplace_back(option);
  return *this;
}

VmSettings& VmSettings::Property(std::string_view name, std::string_view value) {
  m_properties.emplace_back(name, value);
  return *this;
}

VmSettings& VmSettings::Agent(const Path& agent, std::string_view options) {
  m_agents.emplace_back(agent, options);
  return *this;
}

VmSettings& VmSettings::Verbose(std::string_view what) {
  m_verbose.emplace_back(what);
  return *this;
}

VmSettings& VmSettings::Runtime(const Path& homeOrLibrary) {
  m_runtime = homeOrLibrary;
  return *this;
}

VmSettings& VmSettings::Runtime(const java::Runtime& runtime) { return Runtime(runtime.Library()); }

VmSettings& VmSettings::JniVersion(jint version) {
  m_jniVersion = version;
  return *this;
}

VmSettings& VmSettings::OnExit(std::function<void(jint)> function) {
  m_onExit = std::move(function);
  return *this;
}

VmSettings& VmSettings::OnAbort(std::function<void()> function) {
  m_onAbort = std::move(function);
  return *this;
}

VmSettings& VmSettings::OnOutput(std::function<void(std::string_view)> function) {
  m_onOutput = std::move(function);
  return *this;
}

}  // namespace torvan::java
