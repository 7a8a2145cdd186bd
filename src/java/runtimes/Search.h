// The search for Java runtimes.
#pragma once

#include <torvan/java/Runtimes.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "java/runtimes/Home.h"
#include "java/runtimes/Machine.h"

namespace torvan::java::detail {

// Searches one place after the other and collects what it finds.
class Search {
 public:
  explicit Search(const Machine& machine) : m_machine(machine) {}

  // All places where runtimes usually are.
  void LookEverywhere();
  // A folder, and those in it. Refused when it is not there, and when it is no home and cannot be listed.
  void LookInto(const std::filesystem::path& folder);
  // A folder that should be a home. Refused when it is none.
  void LookAt(const std::filesystem::path& home, const std::string& foundIn);

  // Sorted as a host sees them.
  Runtimes Result() const;
  // Where it has searched, a line each, for people.
  const std::vector<std::string>& Looked() const { return m_looked; }

 private:
  void LookAtVariable(const char* name);
  // What a variable or a key of the registry holds.
  void LookAtSetting(const std::string& home, const std::string& foundIn);
  void LookAlongPath();
  void LookAtProgram(const std::filesystem::path& program);
  void LookIntoRegistry();
  void LookIntoUsualFolders();
  // A folder among others. Skipped when nothing in it is Java's.
  void Glance(const std::filesystem::path& folder, const std::string& foundIn);
  void Keep(const std::filesystem::path& home, HomeReading reading, const std::string& foundIn);
  void Refuse(const std::filesystem::path& home, std::string reason, const std::string& foundIn);

  const Machine& m_machine;
  Runtimes m_runtimes;
  std::vector<std::string> m_looked;
  std::set<std::string> m_seen;  // homes that are in m_runtimes
};

}  // namespace torvan::java::detail
