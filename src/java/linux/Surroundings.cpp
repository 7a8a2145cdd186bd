#include "java/processes/Surroundings.h"

#include <locale.h>
#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "java/linux/Descriptor.h"
#include "java/linux/SignalsBlocked.h"
#include "java/processes/Environment.h"

namespace torvan::java::detail {

const char* const JavaProgramName = "java";
const NativeText::value_type PathListSeparator = ':';

namespace {

std::string* Find(std::vector<NativeText>& environment, const char* prefix) {
  for (std::string& variable : environment) {
    if (IsSameVariable(prefix, variable)) return &variable;
  }
  return nullptr;
}

bool IsUtf8Locale(const std::string& name) {
  const std::size_t dot = name.find('.');
  if (dot == std::string::npos) return false;
  const std::string codeset = name.substr(dot + 1, name.find('@') - dot - 1);
  return strcasecmp(codeset.c_str(), "UTF-8") == 0 || strcasecmp(codeset.c_str(), "UTF8") == 0;
}

// A locale of which only the encoding is used.
const char* Utf8Locale() {
  for (const char* name : {"C.UTF-8", "en_US.UTF-8"}) {
    if (const locale_t locale = newlocale(LC_CTYPE_MASK, name, nullptr); locale != nullptr) {
      freelocale(locale);
      return name;
    }
  }
  return "C.UTF-8";
}

}  // namespace

std::string ReasonOf(unsigned long error) { return std::generic_category().message(static_cast<int>(error)); }

unsigned long OwnProcessId() noexcept { return static_cast<unsigned long>(getpid()); }

std::vector<NativeText> OwnEnvironment() {
  std::vector<NativeText> environment;
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    environment.emplace_back(*variable);
  }
  return environment;
}

bool IsSameVariable(const NativeText& one, const NativeText& other) {
  const std::size_t end = one.find('=') + 1;
  return one.compare(0, end, other, 0, other.find('=') + 1) == 0;
}

// Java takes the encoding of arguments, paths and variables from the locale. The rest of the locale, such as its
// language, stays as it is.
void CompleteEnvironment(std::vector<NativeText>& environment, const std::vector<EnvironmentChange>& changes) {
  for (const EnvironmentChange& change : changes) {
    if (change.name == "LC_ALL" || change.name == "LC_CTYPE" || change.name == "LANG") return;
  }
  for (const char* name : {"LC_ALL=", "LC_CTYPE=", "LANG="}) {
    const std::string* const variable = Find(environment, name);
    const std::string locale = variable != nullptr ? variable->substr(variable->find('=') + 1) : "";
    if (locale.empty()) continue;
    if (IsUtf8Locale(locale)) return;
    if (std::string(name) == "LC_ALL=") {
      // It would override LC_CTYPE. LANG says the same, and LC_CTYPE overrides it.
      for (const char* lesser : {"LC_MESSAGES", "LC_TIME", "LC_NUMERIC", "LC_MONETARY", "LC_COLLATE"}) {
        Change(environment, {lesser, locale});
      }
      Change(environment, {"LC_ALL", std::nullopt});
    }
    break;
  }
  Change(environment, {"LC_CTYPE", Utf8Locale()});
}

std::string ToArgumentFileBytes(const NativeText& argument) { return argument; }

std::thread StartQuietThread(std::function<void()> run) {
  const SignalsBlocked blocked;
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error& failure) {
    throw StartFailure("java/linux/Surroundings", __LINE__,
                       "Could not start a thread for the program: " + failure.code().message());
  }
}

TemporaryFile::TemporaryFile(const std::string& bytes) {
  const char* const folder = std::getenv("TMPDIR");
  std::string name = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/java-arguments-XXXXXX";
  Descriptor file(mkostemp(name.data(), O_CLOEXEC));
  bool isWritten = static_cast<bool>(file);
  if (isWritten) m_path = std::filesystem::absolute(name);
  for (std::size_t at = 0; isWritten && at < bytes.size();) {
    const ssize_t size = write(file.Number(), bytes.data() + at, bytes.size() - at);
    if (size > 0) at += static_cast<std::size_t>(size);
    isWritten = size > 0 || errno == EINTR;
  }
  if (isWritten) return;
  const int error = errno;
  if (file) unlink(name.c_str());
  throw StartFailure(
      "java/linux/Surroundings", __LINE__,
      "Could not write the argument file \"" + name + "\": " + ReasonOf(static_cast<unsigned long>(error)));
}

TemporaryFile::~TemporaryFile() { unlink(m_path.c_str()); }

}  // namespace torvan::java::detail
