// java.exe and javaw.exe of the tests' Java runtime: like those of any runtime for Windows they load the VM library
// beside them, let the VM find the main class, run it and end with its exit code.
#include <jni.h>
#include <windows.h>
// Needs <windows.h> before it.
#include <shellapi.h>

#include <string>
#include <vector>

namespace {

constexpr int ExitFailed = 1;

struct CommandLine {
  std::vector<std::string> options;
  bool isJar = false;
  std::wstring main;  // a class, or the path of a jar
  std::vector<std::wstring> arguments;
};

std::string Utf8(const std::wstring& text) {
  const auto length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, result.data(), size, nullptr, nullptr);
  return result;
}

CommandLine Read(const std::vector<std::wstring>& words) {
  CommandLine line;
  std::size_t next = 0;
  const auto value = [&] { return next < words.size() ? words[next++] : std::wstring(); };
  while (line.main.empty() && next < words.size()) {
    const std::wstring word = words[next++];
    if (word == L"-cp" || word == L"-classpath") {
      line.options.push_back("-Djava.class.path=" + Utf8(value()));
    } else if (word == L"-jar") {
      line.isJar = true;
      line.main = value();
      line.options.push_back("-Djava.class.path=" + Utf8(line.main));
    } else if (word[0] == L'-') {
      line.options.push_back(Utf8(word));
    } else {
      line.main = word;
    }
  }
  line.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
  return line;
}

// The VM opens a jar by its name on Unix.
std::wstring OnUnix(const std::wstring& path) {
  using NameOf = char*(__cdecl*)(const wchar_t*);
  const auto nameOf = reinterpret_cast<NameOf>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  const char* name = nameOf != nullptr ? nameOf(path.c_str()) : nullptr;
  if (name == nullptr) return path;
  wchar_t wide[4 * MAX_PATH];
  return MultiByteToWideChar(CP_UTF8, 0, name, -1, wide, 4 * MAX_PATH) > 0 ? wide : path;
}

JNIEnv* CreateVm(const CommandLine& line, JavaVM** vm) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring path = program;
  const HMODULE library = LoadLibraryW((path.substr(0, path.rfind(L'\\')) + L"\\server\\jvm.dll").c_str());
  if (library == nullptr) return nullptr;
  using Create = jint(JNICALL*)(JavaVM**, void**, void*);
  const auto create = reinterpret_cast<Create>(reinterpret_cast<void*>(GetProcAddress(library, "JNI_CreateJavaVM")));

  std::vector<JavaVMOption> options;
  for (const std::string& option : line.options) options.push_back({const_cast<char*>(option.c_str()), nullptr});
  JavaVMInitArgs arguments = {JNI_VERSION_1_8, static_cast<jint>(options.size()), options.data(), JNI_FALSE};
  void* env = nullptr;
  return create(vm, &env, &arguments) == JNI_OK ? static_cast<JNIEnv*>(env) : nullptr;
}

jstring JavaText(JNIEnv* env, const std::wstring& text) {
  return env->NewString(reinterpret_cast<const jchar*>(text.c_str()), static_cast<jsize>(text.size()));
}

// The runtime's own way to the main class; it says what is wrong and ends the process when there is none.
jclass FindMain(JNIEnv* env, const CommandLine& line) {
  constexpr jint classMode = 1;
  constexpr jint jarMode = 2;
  jclass helper = env->FindClass("sun/launcher/LauncherHelper");
  jmethodID find = env->GetStaticMethodID(helper, "checkAndLoadMain", "(ZILjava/lang/String;)Ljava/lang/Class;");
  return static_cast<jclass>(env->CallStaticObjectMethod(helper, find, jboolean{JNI_TRUE},
                                                         line.isJar ? jarMode : classMode,
                                                         JavaText(env, line.isJar ? OnUnix(line.main) : line.main)));
}

int RunMain(JNIEnv* env, const CommandLine& line) {
  jclass mainClass = FindMain(env, line);
  if (mainClass != nullptr) {
    jmethodID main = env->GetStaticMethodID(mainClass, "main", "([Ljava/lang/String;)V");
    jobjectArray arguments =
        env->NewObjectArray(static_cast<jsize>(line.arguments.size()), env->FindClass("java/lang/String"), nullptr);
    for (std::size_t i = 0; i < line.arguments.size(); ++i) {
      env->SetObjectArrayElement(arguments, static_cast<jsize>(i), JavaText(env, line.arguments[i]));
    }
    env->CallStaticVoidMethod(mainClass, main, arguments);
  }
  if (!env->ExceptionCheck()) return 0;
  env->ExceptionDescribe();
  return ExitFailed;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  const CommandLine line = Read(std::vector<std::wstring>(words + 1, words + count));
  JavaVM* vm = nullptr;
  JNIEnv* env = CreateVm(line, &vm);
  if (env == nullptr || line.main.empty()) return ExitFailed;
  const int exitCode = RunMain(env, line);
  vm->DetachCurrentThread();
  vm->DestroyJavaVM();
  return exitCode;
}
