#include "java/VmOptions.h"

#include <torvan/java/Failure.h>
#include <torvan/java/Runtimes.h>
#include <torvan/java/detail/Utf.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "java/OptionChecks.h"
#include "java/PathText.h"
#include "java/VmLibrary.h"
#include "java/processes/Surroundings.h"

namespace torvan::java {

namespace fs = std::filesystem;
using detail::ToText;

namespace {

void RequireThere(const char* what, const fs::path& part) {
  std::error_code error;
  if (fs::exists(part, error)) return;
  const std::string text = ToText(part);
  const bool isList = text.find(detail::PathListSeparator) != std::string::npos;
  throw StartFailure("java/VmOptions", __LINE__,
                     std::string(what) + " " + text + " is not there" + (isList ? ": give each part by itself" : ""));
}

// "folder/*" means the archives of the folder, which is something that Java's own launcher does and the VM does not;
// "*" means those of the current one.
void AppendPart(const char* what, const fs::path& part, std::vector<fs::path>& parts) {
  if (part.filename() != "*") {
    RequireThere(what, part);
    parts.push_back(part);
    return;
  }
  const fs::path folder = part.has_parent_path() ? part.parent_path() : fs::path(".");
  RequireThere(what, folder);
  const std::size_t first = parts.size();
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const fs::path extension = entry->path().extension();
    if (extension == ".jar" || extension == ".JAR") parts.push_back(entry->path());
  }
  if (error) {
    throw StartFailure("java/VmOptions", __LINE__,
                       std::string(what) + " " + ToText(folder) + " cannot be read: " + detail::ReasonOf(error));
  }
  std::sort(parts.begin() + static_cast<std::ptrdiff_t>(first), parts.end());
}

std::string PathList(const char* what, const std::vector<fs::path>& given) {
  std::vector<fs::path> parts;
  for (const fs::path& part : given) AppendPart(what, part, parts);
  std::string list;
  for (const fs::path& part : parts) {
    const std::string text = ToText(part);
    if (text.find(detail::PathListSeparator) != std::string::npos) {
      throw StartFailure("java/VmOptions", __LINE__,
                         std::string(what) + " " + text + " has the separator of path lists in its name");
    }
    if (!list.empty()) list += detail::PathListSeparator;
    list += text;
  }
  return list;
}

// The home of a runtime whose library this is, by the library's place in it; empty for a library that is elsewhere.
fs::path HomeOf(const fs::path& library) {
  for (const char* place : detail::VmLibraryPlaces) {
    fs::path home = library.lexically_normal();
    fs::path tail = place;
    for (; !tail.empty() && home.filename() == tail.filename(); tail = tail.parent_path()) home = home.parent_path();
    if (tail.empty()) return home;
  }
  return {};
}

// Name and value of the system property that an option sets. Nothing for those of Java's own, because it reads some of
// them only while it starts, and many are paths, which it could not open.
std::optional<std::pair<std::string, std::string>> HostProperty(std::string_view option) {
  constexpr std::string_view OfJava[] = {"awt.", "com.sun.", "file.", "java.", "javax.", "jdk.", "sun.", "user."};
  if (option.substr(0, 2) != "-D") return std::nullopt;
  const std::size_t end = std::min(option.find('='), option.size());
  const std::string_view name = option.substr(2, end - 2);
  if (name.empty()) return std::nullopt;
  for (const std::string_view beginning : OfJava) {
    if (name.substr(0, beginning.size()) == beginning) return std::nullopt;
  }
  return std::pair(std::string(name), std::string(option.substr(std::min(end + 1, option.size()))));
}

// The versions of Java that may offer this version of JNI, which is named after the first that does. Of a number that
// is no such version, the VM is the judge.
VersionRange VersionsWith(jint jniVersion) {
  const int high = jniVersion >> 16;
  const int feature = high == 1 ? jniVersion & 0xFFFF : high;  // 0x00010008 and, since then, 0x00090000
  return feature > 0 ? AtLeast(feature) : VersionRange();
}

}  // namespace

fs::path VmOptions::LibraryOf(const VmSettings& settings) {
  const fs::path& runtime = settings.m_runtime;
  if (runtime.empty()) return ChooseRuntime(VersionsWith(settings.m_jniVersion)).Library();
  RequireThere("The Java runtime", runtime);
  std::error_code error;
  return fs::is_directory(runtime, error) ? RuntimeIn(runtime).Library() : runtime;
}

VmOptions::VmOptions(const VmSettings& settings, const fs::path& library)
    : m_home(HomeOf(library)), m_hasModulePath(!settings.m_modulePath.empty()) {
  AddPaths(settings);
  if (!settings.m_maximumHeap.empty()) m_texts.push_back("-Xmx" + settings.m_maximumHeap);
  for (const auto& [name, value] : settings.m_properties) {
    if (name.empty() || name.find('=') != std::string::npos) {
      throw StartFailure("java/VmOptions", __LINE__, "\"" + name + "\" is no name of a system property");
    }
    m_texts.emplace_back("-D").append(name).append("=").append(value);
  }
  AddAgents(settings);
  for (const std::string& what : settings.m_verbose) m_texts.push_back("-verbose:" + what);
  m_texts.insert(m_texts.end(), settings.m_options.begin(), settings.m_options.end());
  Check();
  Encode();
}

void VmOptions::AddPaths(const VmSettings& settings) {
  if (!settings.m_classPath.empty()) {
    m_texts.push_back("-Djava.class.path=" + PathList("The class path part", settings.m_classPath));
  }
  if (!settings.m_modulePath.empty()) {
    m_texts.push_back("--module-path=" + PathList("The module path part", settings.m_modulePath));
  }
}

void VmOptions::AddAgents(const VmSettings& settings) {
  for (const auto& [agent, options] : settings.m_agents) {
    const bool isArchive = agent.extension() == ".jar";
    const char* const kind = isArchive ? "-javaagent:" : agent.has_parent_path() ? "-agentpath:" : "-agentlib:";
    std::string& text = m_texts.emplace_back(kind + ToText(agent));
    if (!options.empty()) text.append("=").append(options);
  }
}

void VmOptions::Check() const {
  for (const std::string& text : m_texts) {
    const std::size_t end = text.find('\0');
    if (!text.empty() && end == std::string::npos) continue;
    throw StartFailure("java/VmOptions", __LINE__,
                       "An option of the Java VM is empty or has a NUL in it: \"" + text.substr(0, end) + "\"");
  }
  detail::CheckAgents(m_texts, m_home);
  detail::CheckHeap(m_texts);
  detail::CheckCollectors(m_texts);
  if (!m_hasModulePath) detail::CheckModules(m_texts, m_home);
}

void VmOptions::Encode() try {
  for (const std::string& text : m_texts) {
    const auto property = HostProperty(text);
    if (property) {  // the last of a name counts
      const auto isSame = [&property](const auto& earlier) { return earlier.first == property->first; };
      m_lateProperties.erase(std::remove_if(m_lateProperties.begin(), m_lateProperties.end(), isSame),
                             m_lateProperties.end());
    }
    std::string reason;
    if (std::optional<std::string> encoded = detail::OptionText(text, reason)) {
      m_encoded.push_back(std::move(*encoded));
    } else if (property) {
      detail::ToUtf16(text);  // what is no UTF-8 is refused here: a process can have only one VM
      m_lateProperties.push_back(*property);
    } else {
      throw StartFailure("java/VmOptions", __LINE__,
                         std::string("The option ").append(text).append(" ").append(reason));
    }
  }
} catch (const Misuse& invalid) {
  throw Misuse("java/VmOptions", __LINE__, std::string("an option of the Java VM: ") + invalid.what());
}

}  // namespace torvan::java
