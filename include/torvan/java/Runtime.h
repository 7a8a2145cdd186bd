// A Java runtime that is installed on this machine.
#pragma once

#include <torvan/java/Version.h>

#include <filesystem>
#include <string>

namespace torvan::java {

namespace detail {

struct RuntimeFacts {
  std::filesystem::path home;
  java::Version version;
  std::string vendor;
  std::string cpu;
  bool isJdk;
  std::filesystem::path library;
  std::filesystem::path java;
  std::string foundIn;
};

}  // namespace detail

// A Java runtime that this process can load, as it was when it was found.
// A value: copies are independent, and different threads may use different copies. Texts are UTF-8, paths are absolute.
class Runtime {
 public:
  // FindRuntimes, ChooseRuntime and RuntimeIn make them.
  explicit Runtime(detail::RuntimeFacts facts);

  // The folder of the runtime, with all links followed. The runtime inside a kit of version 8 is that kit; a folder
  // "jre" with its own release file is not inside a kit.
  const std::filesystem::path& Home() const noexcept { return m_facts.home; }
  const java::Version& Version() const noexcept { return m_facts.version; }
  // The vendor as the runtime states it, "Eclipse Adoptium"; empty when it states none, like most of version 8.
  const std::string& Vendor() const noexcept { return m_facts.vendor; }
  // The CPU that the VM library is for: "x86_64" or "aarch64".
  const std::string& Cpu() const noexcept { return m_facts.cpu; }
  // Whether it has a compiler, too.
  bool IsJdk() const noexcept { return m_facts.isJdk; }
  // The VM library.
  const std::filesystem::path& Library() const noexcept { return m_facts.library; }
  // The java program of the runtime, such as bin/java; empty where the runtime was cut down to its library.
  const std::filesystem::path& Java() const noexcept { return m_facts.java; }
  // Where it was found: "JAVA_HOME", "PATH", a key of the registry, or the folder that it is in.
  const std::string& FoundIn() const noexcept { return m_facts.foundIn; }

 private:
  detail::RuntimeFacts m_facts;
};

// Something that should be a Java runtime, but is none that this process can load.
class RefusedRuntime {
 public:
  RefusedRuntime(std::filesystem::path home, std::string reason, std::string foundIn);

  // The path that was checked. A home that exists has all links followed; a launcher of the PATH is as it was found.
  const std::filesystem::path& Home() const noexcept { return m_home; }
  // The reason in UTF-8, to be printed after the path and a colon: "its VM library is for aarch64, and this program for
  // x86_64".
  const std::string& Reason() const noexcept { return m_reason; }
  const std::string& FoundIn() const noexcept { return m_foundIn; }

 private:
  std::filesystem::path m_home;
  std::string m_reason;
  std::string m_foundIn;
};

}  // namespace torvan::java
