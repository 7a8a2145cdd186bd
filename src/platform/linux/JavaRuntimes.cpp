#include "platform/linux/JavaRuntimes.h"

#include <dirent.h>
#include <fcntl.h>
#include <mirel/base/System.h>
#include <mirel/io/PrintStream.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/linux/FileSystemText.h"

namespace torvan::platform {

using mirel::base::CUnicodeString;

namespace {

struct JavaRuntime {
  CUnicodeString version;
  CUnicodeString home;
  CUnicodeString library;
  bool isKit;
};

using JavaRuntimes = mirel::util::CVector<JavaRuntime>;

// Below the home folder: today's layout, and those of version 8 as a kit and as a runtime alone.
constexpr const char* Libraries[] = {
    "lib/server/libjvm.so",       "jre/lib/amd64/server/libjvm.so", "jre/lib/aarch64/server/libjvm.so",
    "lib/amd64/server/libjvm.so", "lib/aarch64/server/libjvm.so",
};

// The units that the name of a key may have in the Windows registry; callers that enumerate names have no room for
// more.
constexpr unsigned int LongestName = 255;

// The path of a file in a folder. One that is too long is empty, and so names no file.
class FilePath {
 public:
  FilePath(const char* folder, const char* name) {
    const int length = std::snprintf(m_text, sizeof(m_text), "%s/%s", folder, name);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof(m_text)) m_text[0] = 0;
  }
  operator const char*() const { return m_text; }

 private:
  char m_text[PATH_MAX];
};

// The value of a line of the form KEY="value", or null when the line has another key. Writes into the line.
char* ValueOf(const char* key, char* line) {
  const std::size_t length = std::strlen(key);
  if (std::strncmp(line, key, length) != 0 || line[length] != '=') return nullptr;
  char* value = line + length + 1;
  value += std::strspn(value, "\"");
  value[std::strcspn(value, "\"\r\n")] = 0;
  return value;
}

// Much more than any release file has.
constexpr std::size_t MostOfRelease = std::size_t{256} * 1024;

// The lines at the front of a regular file. Anything else has none: a pipe would wait for its other end, and a device
// might never end.
class LinesOfFile {
 public:
  explicit LinesOfFile(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) return;
    struct stat status {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) Read(file);
    close(file);
  }
  ~LinesOfFile() { std::free(m_text); }
  LinesOfFile(const LinesOfFile&) = delete;
  LinesOfFile& operator=(const LinesOfFile&) = delete;

  // Returns the next line, which may be written into, or null after the last.
  char* Next() {
    if (m_next == m_end) return nullptr;
    char* const line = m_next;
    auto* const end = static_cast<char*>(std::memchr(line, '\n', static_cast<std::size_t>(m_end - line)));
    m_next = end != nullptr ? end + 1 : m_end;
    if (end != nullptr) *end = 0;
    return line;
  }

 private:
  void Read(int file) {
    m_text = static_cast<char*>(std::malloc(MostOfRelease + 1));
    if (m_text == nullptr) return;
    m_next = m_end = m_text;
    for (std::size_t room = MostOfRelease; room != 0; room = MostOfRelease - static_cast<std::size_t>(m_end - m_text)) {
      const ssize_t count = read(file, m_end, room);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      m_end += count;
    }
    *m_end = 0;
  }

  char* m_text = nullptr;
  char* m_next = nullptr;
  char* m_end = nullptr;
};

// Null when the folder has no release file or that file has no version.
CUnicodeString ReadVersion(const char* home) {
  LinesOfFile release(FilePath(home, "release"));
  while (char* line = release.Next()) {
    if (const char* version = ValueOf("JAVA_VERSION", line)) return FromUtf8(version);
  }
  return {};
}

CUnicodeString FindLibrary(const char* home) {
  for (const char* library : Libraries) {
    const FilePath path(home, library);
    if (access(path, F_OK) == 0) return FromUtf8(path);
  }
  return {};
}

bool IsNameOfKey(const CUnicodeString& text) { return text.GetLength() <= LongestName && text.Find(u'\\') < 0; }

bool Contains(const JavaRuntimes& runtimes, const CUnicodeString& version) {
  for (unsigned int i = 0; i < runtimes.GetSize(); ++i) {
    if (runtimes[i].version.CompareIgnoreCase(version) == 0) return true;
  }
  return false;
}

// Adds the runtime in a folder, unless one of its version is there. Returns why the folder is no runtime,
// or null.
const char* AddRuntimeAt(const char* path, JavaRuntimes& runtimes) {
  char home[PATH_MAX];
  if (realpath(path, home) == nullptr) return "there is no such folder";
  const JavaRuntime runtime{ReadVersion(home), FromUtf8(home), FindLibrary(home),
                            access(FilePath(home, "bin/javac"), F_OK) == 0};
  if (runtime.home.GetLength() == 0) return "its path is not UTF-8";
  if (runtime.version.GetLength() == 0) return "its release file is missing or has no JAVA_VERSION";
  if (!IsNameOfKey(runtime.version)) return "the JAVA_VERSION of its release file cannot be used";
  if (runtime.library.GetLength() == 0) return "it has no VM library (libjvm.so) where runtimes have theirs";
  if (!Contains(runtimes, runtime.version)) runtimes.Add(runtime);
  return nullptr;
}

// Otherwise a host that set JAVA_HOME would not learn why another Java is used.
void Report(const char* javaHome, const char* reason) {
  mirel::io::CPrintStream* const debugOut = mirel::base::CSystem::debugOut;
  if (debugOut == nullptr) return;
  for (const char* text : {"torvan: JAVA_HOME is passed over: ", javaHome, ": "}) debugOut->Print(text);
  debugOut->PrintLine(reason);
}

void AddRuntimesIn(const char* folder, JavaRuntimes& runtimes) {
  struct Names {
    dirent** list;
    int count;
    ~Names() {
      for (int i = 0; i < count; ++i) std::free(list[i]);
      std::free(list);
    }
  } names{nullptr, 0};
  const auto byName = [](const dirent** left, const dirent** right) {
    return std::strcmp((*left)->d_name, (*right)->d_name);
  };
  const auto visible = [](const dirent* entry) { return entry->d_name[0] != '.' ? 1 : 0; };
  names.count = scandir(folder, &names.list, visible, byName);
  for (int i = 0; i < names.count; ++i) AddRuntimeAt(FilePath(folder, names.list[i]->d_name), runtimes);
}

// The first runtime when it is preferred, or else the newest; null when there is none.
const JavaRuntime* ChooseCurrent(const JavaRuntimes& runtimes, bool firstIsPreferred, bool kitsOnly) {
  const JavaRuntime* current = nullptr;
  for (unsigned int i = 0; i < runtimes.GetSize(); ++i) {
    const JavaRuntime& runtime = runtimes[i];
    if (kitsOnly && !runtime.isKit) continue;
    if (i == 0 && firstIsPreferred) return &runtime;
    if (current == nullptr || CompareNumbersInTurn(runtime.version, current->version) > 0) current = &runtime;
  }
  return current;
}

bool IsDigit(RX::UniChar unit) { return unit >= u'0' && unit <= u'9'; }

// Reads the next number and advances past it; -1 when there is none.
long long ReadNumber(const RX::UniChar*& text) {
  while (*text != 0 && !IsDigit(*text)) ++text;
  if (*text == 0) return -1;
  long long number = 0;
  for (; IsDigit(*text); ++text) {
    if (number < LLONG_MAX / 16) number = number * 10 + (*text - u'0');
  }
  return number;
}

}  // namespace

int CompareNumbersInTurn(const RX::UniChar* left, const RX::UniChar* right) {
  for (;;) {
    const long long leftNumber = ReadNumber(left);
    const long long rightNumber = ReadNumber(right);
    if (leftNumber != rightNumber) return leftNumber < rightNumber ? -1 : 1;
    if (leftNumber < 0) return 0;
  }
}

void AddJavaRuntimes(const char* javaHome, const char* folder, Registry& registry) {
  JavaRuntimes runtimes(4, 4);
  if (javaHome != nullptr && *javaHome != 0) {
    if (const char* reason = AddRuntimeAt(javaHome, runtimes)) Report(javaHome, reason);
  }
  const bool firstIsPreferred = runtimes.GetSize() != 0;
  AddRuntimesIn(folder, runtimes);

  const CUnicodeString runtimeKey = RX_TEXT("Software\\JavaSoft\\Java Runtime Environment\\");
  const CUnicodeString kitKey = RX_TEXT("Software\\JavaSoft\\Java Development Kit\\");
  for (unsigned int i = 0; i < runtimes.GetSize(); ++i) {
    const JavaRuntime& runtime = runtimes[i];
    const CUnicodeString versionKey = runtimeKey + runtime.version + RX_TEXT("\\");
    registry.AddValue(versionKey, RX_TEXT("JavaHome"), runtime.home);
    registry.AddValue(versionKey, RX_TEXT("RuntimeLib"), runtime.library);
    if (runtime.isKit) registry.AddValue(kitKey + runtime.version + RX_TEXT("\\"), RX_TEXT("JavaHome"), runtime.home);
  }
  if (const JavaRuntime* current = ChooseCurrent(runtimes, firstIsPreferred, false)) {
    registry.AddValue(runtimeKey, RX_TEXT("CurrentVersion"), current->version);
  }
  if (const JavaRuntime* current = ChooseCurrent(runtimes, firstIsPreferred, true)) {
    registry.AddValue(kitKey, RX_TEXT("CurrentVersion"), current->version);
  }
}

}  // namespace torvan::platform
