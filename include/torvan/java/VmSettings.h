// How a Java VM is started.
#pragma once

#include <torvan/java/Runtime.h>
#include <torvan/jni/JniTypes.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace torvan::java {

// The settings of a Java VM; each member changes them and returns them.
// Paths, options, agents and properties add to those given before, the rest replaces. Nothing is looked at before
// StartVm. Texts are UTF-8. A copy is independent.
class VmSettings {
 public:
  using Path = std::filesystem::path;

  // Adds folders and archives that classes are loaded from. Each has to be there; "folder/*" stands for the archives of
  // a folder.
  VmSettings& ClassPath(const std::vector<Path>& parts);

  // Adds folders and archives that modules are loaded from. Each has to be there.
  VmSettings& ModulePath(const std::vector<Path>& parts);

  // The most memory that Java objects may take, as in "-Xmx": a number of bytes, or one with k, m, g or t.
  VmSettings& MaximumHeap(std::string_view size);

  // Adds an option as it is written for `java`, one that says what it says without a second one: "--add-modules=x".
  VmSettings& Option(std::string_view option);

  // Adds a system property. The value may be empty.
  VmSettings& Property(std::string_view name, std::string_view value);

  // Adds an agent, a library or an archive "agent.jar", with its own options.
  VmSettings& Agent(const Path& agent, std::string_view options = {});

  // Has the VM report what it does: "class", "gc", "jni" or "module".
  VmSettings& Verbose(std::string_view what);

  // Takes a runtime by its home folder or by its VM library. Without it ChooseRuntime() does.
  VmSettings& Runtime(const Path& homeOrLibrary);
  VmSettings& Runtime(const java::Runtime& runtime);

  // The version of JNI that the runtime has to offer, JNI_VERSION_1_6 unless said.
  VmSettings& JniVersion(jint version);

  // What is called before Java ends the process (System.exit), with the exit code. The process ends when it returns.
  VmSettings& OnExit(std::function<void(jint)> function);

  // What is called before the VM aborts the process.
  VmSettings& OnAbort(std::function<void()> function);

  // What is called with all that the VM itself prints, piece by piece, in place of the standard streams.
  // What Java's System.out prints is not among it.
  VmSettings& OnOutput(std::function<void(std::string_view)> function);

 private:
  friend class VmOptions;
  friend class VmStart;

  std::vector<Path> m_classPath;
  std::vector<Path> m_modulePath;
  std::string m_maximumHeap;
  std::vector<std::string> m_options;
  std::vector<std::pair<std::string, std::string>> m_properties;
  std::vector<std::pair<Path, std::string>> m_agents;
  std::vector<std::string> m_verbose;
  Path m_runtime;
  jint m_jniVersion = JNI_VERSION_1_6;
  std::function<void(jint)> m_onExit;
  std::function<void()> m_onAbort;
  std::function<void(std::string_view)> m_onOutput;
};

}  // namespace torvan::java
