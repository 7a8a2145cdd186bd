#include "java/processes/Surroundings.h"

#include <langinfo.h>
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

namespace {

std::string* Find(std::vector<NativeText>& environment, const char* prefix) {
  for (std::string& variable : environment) {
    if (IsSameVariable(prefix, variable)) return &variable;
  }
  return nullptr;
}

// The variables of a locale; the first and the last are for all categories.
constexpr const char* LocaleVariables[] = {
    "LC_ALL",   "LC_CTYPE", "LC_MESSAGES", "LC_TIME",      "LC_NUMERIC",     "LC_MONETARY",       "LC_COLLATE",
    "LC_PAPER", "LC_NAME",  "LC_ADDRESS",  "LC_TELEPHONE", "LC_MEASUREMENT", "LC_IDENTIFICATION", "LANG"};

class Locale {
 public:
  explicit Locale(const std::string& name) : m_locale(newlocale(LC_ALL_MASK, name.c_str(), nullptr)) {}
  ~Locale() {
    if (m_locale != nullptr) freelocale(m_locale);
  }
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;

  bool IsInstalled() const { return m_locale != nullptr; }
  bool IsUtf8() const { return m_locale != nullptr && strcasecmp(nl_langinfo_l(CODESET, m_locale), "UTF-8") == 0; }

 private:
  const locale_t m_locale;
};

std::string ValueOf(std::vector<NativeText>& environment, const char* name) {
  const std::string prefix = std::string(name) + "=";
  const std::string* const variable = Find(environment, prefix.c_str());
  return variable != nullptr ? variable->substr(prefix.size()) : std::string();
}

// Returns the name of the locale that decides how texts are encoded, as the environment has it; empty without one.
std::string LocaleOfTexts(std::vector<NativeText>& environment) {
  std::string locale;
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    if (locale.empty()) locale = ValueOf(environment, name);
  }
  return locale;
}

// Returns the locale of the same language in UTF-8 if that is installed: "de_DE.UTF-8" for "de_DE@euro". Otherwise
// returns one without a language.
std::string Utf8LocaleLike(const std::string& locale) {
  for (const std::string& name :
       {locale.substr(0, locale.find_first_of(".@")) + ".UTF-8", std::string("C.UTF-8"), std::string("en_US.UTF-8")}) {
    if (Locale(name).IsUtf8()) return name;
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

// Java takes the encoding of arguments, paths and variables from LC_CTYPE, and from it the formats of numbers and
// dates, too, so that these lose their language where it is not installed in UTF-8. The language of messages stays as
// it is. A variable whose locale is not installed is removed, because it makes the C library reject all the others,
// the encoding's included.
void CompleteEnvironment(std::vector<NativeText>& environment, const std::vector<EnvironmentChange>& changes) {
  for (const EnvironmentChange& change : changes) {
    if (change.name == "LC_ALL" || change.name == "LC_CTYPE" || change.name == "LANG") return;
  }
  const std::string before = LocaleOfTexts(environment);
  for (const char* name : LocaleVariables) {
    const std::string value = ValueOf(environment, name);
    if (!value.empty() && !Locale(value).IsInstalled()) Change(environment, {name, std::nullopt});
  }
  const std::string now = LocaleOfTexts(environment);
  if (!now.empty() && Locale(now).IsUtf8()) return;
  if (const std::string all = ValueOf(environment, "LC_ALL"); !all.empty()) {
    // LC_ALL would override LC_CTYPE, so each of the other variables is set to its value instead.
    for (const char* name : LocaleVariables) Change(environment, {name, all});
    Change(environment, {"LC_ALL", std::nullopt});
  }
  Change(environment, {"LC_CTYPE", Utf8LocaleLike(before)});
}

std::string ToArgumentFileBytes(const NativeText& argument) { return argument; }

std::thread StartQuietThread(std::function<void()> run) {
  const SignalsBlocked blocked;
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error& failure) {
    throw StartFailure("java/linux/Surroundings", __LINE__,
                       "Could not start a thread for the program: " + ReasonOf(failure.code()));
  }
}

TemporaryFile::TemporaryFile(const std::string& bytes) {
  const char* const folder = std::getenv("TMPDIR");
  std::error_code noFolder;
  m_path = std::filesystem::path(folder != nullptr && *folder != '\0' ? folder : "/tmp") / "java-arguments-XXXXXX";
  m_path = std::filesystem::absolute(m_path, noFolder).native();
  int error = noFolder.value();
  if (error == 0) error = Write(bytes);
  if (error == 0) return;
  const std::string reason = ReasonOf(static_cast<unsigned long>(error));
  throw StartFailure("java/linux/Surroundings", __LINE__,
                     "Could not write the argument file \"" + m_path + "\": " + reason);
}

int TemporaryFile::Write(const std::string& bytes) noexcept {
  Descriptor file(mkostemp(m_path.data(), O_CLOEXEC));
  if (!file) return errno;
  bool isWritten = file.MoveAboveStandard();
  for (std::size_t at = 0; isWritten && at < bytes.size();) {
    const ssize_t size = write(file.Number(), bytes.data() + at, bytes.size() - at);
    if (size > 0) at += static_cast<std::size_t>(size);
    isWritten = size > 0 || errno == EINTR;
  }
  if (isWritten) return 0;
  const int error = errno;
  unlink(m_path.c_str());
  return error;
}

TemporaryFile::~TemporaryFile() { unlink(m_path.c_str()); }

}  // namespace torvan::java::detail
