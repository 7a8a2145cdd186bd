// A native program with plug-ins in Java: each jar of a folder is one, and has a class plugin.Main that implements the
// host's interface, java/host/Filter.java.
//   java_plugins HOST-CLASSES PLUGIN-FOLDER
// Each has its own class loader, so that classes of different plug-ins may have the same name, and is unloaded at the
// end.
#include <torvan/Java.h>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace java = torvan::java;

struct Filter {
  static constexpr char JavaName[] = "host/Filter";
  static constexpr java::Method<Filter, std::string()> Name{"name"};
  static constexpr java::Method<Filter, std::vector<std::string>(std::vector<std::string>)> Apply{"apply"};
};
struct Main {
  static constexpr char JavaName[] = "plugin/Main";
};

struct Plugin {
  java::ClassLoader loader;
  java::Global<Filter> filter;
};

static Plugin Load(const std::filesystem::path& jar) {
  const auto loader = java::ClassLoader::OfJars({jar});
  const java::ContextClassLoader scope(loader);  // for libraries that find services and resources by it
  const auto made = java::Constructor<Main()>().In(loader.FindClass("plugin.Main"))();
  return {loader, java::Global<Filter>(java::Cast<Filter>(made))};
}

static std::vector<Plugin> LoadAll(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> jars;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".jar") jars.push_back(entry.path());
  }
  std::sort(jars.begin(), jars.end());
  std::vector<Plugin> plugins;
  for (const std::filesystem::path& jar : jars) {
    try {
      plugins.push_back(Load(jar));
    } catch (const java::Failure& failure) {
      std::printf("%s is no plug-in: %s\n", jar.filename().string().c_str(), failure.what());
    }
  }
  return plugins;
}

// Closes the plug-ins' jars, drops what the host has of them, and says whether Java has let go of all their classes.
static bool Unload(std::vector<Plugin>& plugins) {
  std::vector<java::Weak<java::Object>> loaders;
  for (const Plugin& plugin : plugins) {
    plugin.loader.Close();
    loaders.push_back(plugin.loader.WeakReference());
  }
  plugins.clear();
  const auto isGone = [](const java::Weak<java::Object>& loader) { return !loader.Lock(); };
  for (int i = 0; i < 10 && !std::all_of(loaders.begin(), loaders.end(), isGone); ++i) {
    java::CallStatic<void>("java/lang/System", "gc");
  }
  return std::all_of(loaders.begin(), loaders.end(), isGone);
}

int main(int argc, char** argv) try {
  if (argc < 3) throw std::invalid_argument("java_plugins HOST-CLASSES PLUGIN-FOLDER");
  const java::Vm vm = java::StartVm(java::VmSettings().ClassPath({argv[1]}).MaximumHeap("64m"));
  std::vector<Plugin> plugins = LoadAll(argv[2]);
  std::vector<std::string> lines = {"pears", "apples", "oranges"};
  for (const Plugin& plugin : plugins) {
    lines = Filter::Apply(plugin.filter, lines);
    std::printf("%s:", Filter::Name(plugin.filter).c_str());
    for (const std::string& line : lines) std::printf(" %s", line.c_str());
    std::printf("\n");
  }
  std::printf("unloaded: %s\n", Unload(plugins) ? "yes" : "no");
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
