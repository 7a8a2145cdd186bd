#include "java/runtimes/Places.h"

#include "java/runtimes/BinaryHeader.h"

namespace torvan::java::detail {
namespace {

// Where installers put their runtimes, for all users and for one.
const std::vector<const char*> Installed{
    "Java\\*",       "Eclipse Adoptium\\*", "Eclipse Foundation\\*", "AdoptOpenJDK\\*", "Microsoft\\jdk*",
    "Zulu\\*",       "Amazon Corretto\\*",  "BellSoft\\*",           "Semeru\\*",       "RedHat\\*",
    "SapMachine\\*", "SapMachine\\JDK\\*",  "ojdkbuild\\*",
};

}  // namespace

const Places& UsualPlaces() {
  static const Places s_places{
      true,
      '\\',
      // 32-bit installers write to the second, and some 64-bit ones do. HKCU is for installations of one user.
      {"HKLM\\SOFTWARE", "HKLM\\SOFTWARE\\WOW6432Node", "HKCU\\SOFTWARE", "HKCU\\SOFTWARE\\WOW6432Node"},
      {
          {"JavaHome",
           {"JavaSoft\\Java Runtime Environment\\*", "JavaSoft\\Java Development Kit\\*", "JavaSoft\\JRE\\*",
            "JavaSoft\\JDK\\*"}},
          {"Path",
           {"Eclipse Adoptium\\JDK\\*\\*\\MSI", "Eclipse Adoptium\\JRE\\*\\*\\MSI",
            "Eclipse Foundation\\JDK\\*\\*\\MSI", "Eclipse Foundation\\JRE\\*\\*\\MSI", "AdoptOpenJDK\\JDK\\*\\*\\MSI",
            "AdoptOpenJDK\\JRE\\*\\*\\MSI", "Microsoft\\JDK\\*\\*\\MSI", "Semeru\\JDK\\*\\*\\MSI",
            "Semeru\\JRE\\*\\*\\MSI"}},
          {"InstallationPath",
           {"Azul Systems\\Zulu\\*", "Azul Systems\\Zulu 32-bit\\*", "BellSoft\\Liberica\\*",
            "BellSoft\\Liberica\\*\\MSI"}},
      },
      {
          {"$ProgramFiles", Installed},
          {"$ProgramW6432", Installed},
          {"$ProgramFiles(x86)", Installed},
          {"$LOCALAPPDATA\\Programs", Installed},
          {"$GRADLE_USER_HOME", {"jdks\\*", "jdks\\*\\*"}},
          {"$SCOOP", {"apps\\*\\current"}},
          {"$ProgramData", {"scoop\\apps\\*\\current"}},
          {"$USERPROFILE",
           {".jdks\\*", ".gradle\\jdks\\*", ".gradle\\jdks\\*\\*", ".jbang\\cache\\jdks\\*",
            ".sdkman\\candidates\\java\\*", ".jabba\\jdk\\*", "scoop\\apps\\*\\current"}},
      },
  };
  return s_places;
}

const Layout& UsualLayout() {
  static const Layout s_layout{
      "bin\\java.exe", "bin\\javac.exe", "jvm.dll", {"bin", "jre\\bin"}, "PE", CpuOfPe, "",
  };
  return s_layout;
}

}  // namespace torvan::java::detail
