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
// Paths, options, agents and properties are added to the earlier ones; any other setting replaces the earlier one.
// Nothing is checked before StartVm. Texts are UTF-8. Copies are independent.
// Java takes paths, properties and options in the system's encoding: on Linux that of the locale that LC_ALL, LC_CTYPE
// or LANG names in the environment, on Windows the code page. StartVm throws StartFailure for those with characters
// that the code page has not, or with more than ASCII in the locale "C"; only properties of the host's own arrive there
// as well (Property). On Linux Java reads UTF-8 as if it were the locale's encoding: set a locale in UTF-8 before.
class VmSettings {
 public:
  using Path = std::filesystem::path;

  // Adds folders and archives that classes are loaded from. Each must exist; "folder/*" means the archives in a folder,
  // and "*" those in the current one.
  VmSettings& ClassPath(const std::vector<Path>& parts);

  // Adds folders and archives that modules are loaded from. Each must exist.
  VmSettings& ModulePath(const std::vector<Path>& parts);

  // The most memory that Java objects may take, as in "-Xmx": a number of bytes, or one with k, m, g or t.
  VmSettings& MaximumHeap(std::string_view size);

  // Adds an option as it is written for `java`, in one word: "--add-modules=x".
  VmSettings& Option(std::string_view option);

  // Adds a system property. The value may be empty. One that the system's encoding has not, in name or value, is set
  // when the VM runs, so that agents begin without it; StartVm refuses it where it is Java's own, which Java may read
  // before: where its name begins with "java.", "javax.", "jdk.", "sun.", "com.sun.", "user.", "file." or "awt.".
  VmSettings& Property(std::string_view name, std::string_view value);

  // Adds an agent, a library or an archive "agent.jar", with its own options.
  VmSettings& Agent(const Path& agent, std::string_view options = {});

  // Has the VM report what it does: "class", "gc", "jni" or "module".
  VmSettings& Verbose(std::string_view what);

  // The runtime to load, by its home folder or by its VM library. By default the one that ChooseRuntime() returns for
  // versions of Java that offer the JniVersion().
  VmSettings& Runtime(const Path& homeOrLibrary);
  VmSettings& Runtime(const java::Runtime& runtime);

  // The version of JNI that the runtime has to support, JNI_VERSION_1_6 by default. JNI_VERSION_21 needs Java 21.
  VmSettings& JniVersion(jint version);

  // The three functions must not throw, which ends the process: the VM calls them.

  // Called with the exit code before Java ends the process (System.exit). The process ends when it returns.
  VmSettings& OnExit(std::function<void(jint)> function);

  // Called before the VM aborts the process.
  VmSettings& OnAbort(std::function<void()> function);

  // Called with all that the VM itself prints, piece by piece, instead of the standard streams.
  // That does not include what Java's System.out prints. Several threads may call it at once.
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
