// What release files of real runtimes tell.
#pragma once

#include <ostream>
#include <string>

namespace tests {

struct RealRelease {
  const char* name;
  const char* runtimeVersion;  // null: the file has no such line
  const char* version;
  const char* implementor;
  const char* expected;  // the version that counts
  int feature;

  // Such a file, with lines around those.
  std::string File() const {
    std::string file;
    if (implementor != nullptr) file += Line("IMPLEMENTOR", implementor);
    if (runtimeVersion != nullptr) file += Line("JAVA_RUNTIME_VERSION", runtimeVersion);
    file += Line("JAVA_VERSION", version) + Line("JAVA_VERSION_DATE", "2021-07-20") + Line("LIBC", "default");
    return file + Line("MODULES", "java.base java.compiler") + Line("SOURCE", " .:e983a19c6439 corba:2bb2aec4b3e5");
  }

 private:
  static std::string Line(const std::string& key, const std::string& value) { return key + "=\"" + value + "\"\n"; }
};

inline std::ostream& operator<<(std::ostream& out, const RealRelease& release) { return out << release.name; }

// clang-format off
inline const RealRelease RealReleases[] = {
    {"Oracle 7u40",             nullptr,                                     "1.7.0",      nullptr,              "1.7.0",                                     7},
    {"OpenJDK 7u80",            nullptr,                                     "1.7.0_80",   nullptr,              "1.7.0_80",                                  7},
    {"Oracle 8u45",             nullptr,                                     "1.8.0_45",   nullptr,              "1.8.0_45",                                  8},
    {"Oracle 8u74",             nullptr,                                     "1.8.0_74",   nullptr,              "1.8.0_74",                                  8},
    {"Oracle 8u101 JRE",        nullptr,                                     "1.8.0_101",  nullptr,              "1.8.0_101",                                 8},
    {"Oracle 8u102",            nullptr,                                     "1.8.0_102",  nullptr,              "1.8.0_102",                                 8},
    {"OpenJDK 8u131",           nullptr,                                     "1.8.0_131",  nullptr,              "1.8.0_131",                                 8},
    {"Oracle 8u191 32 bit",     nullptr,                                     "1.8.0_191",  nullptr,              "1.8.0_191",                                 8},
    {"Oracle 8u211 JRE",        nullptr,                                     "1.8.0_211",  nullptr,              "1.8.0_211",                                 8},
    {"OpenJDK 8u222",           nullptr,                                     "1.8.0_222",  nullptr,              "1.8.0_222",                                 8},
    {"OpenJDK 8u252",           nullptr,                                     "1.8.0_252",  nullptr,              "1.8.0_252",                                 8},
    {"OpenJ9 8u265",            nullptr,                                     "1.8.0_265",  nullptr,              "1.8.0_265",                                 8},
    {"AdoptOpenJDK 8u272",      nullptr,                                     "1.8.0_272",  "AdoptOpenJDK",       "1.8.0_272",                                 8},
    {"Temurin 8u382",           nullptr,                                     "1.8.0_382",  "Eclipse Adoptium",   "1.8.0_382",                                 8},
    {"Temurin 8u402",           nullptr,                                     "1.8.0_402",  "Eclipse Adoptium",   "1.8.0_402",                                 8},
    {"Temurin 8u422",           nullptr,                                     "1.8.0_422",  "Eclipse Adoptium",   "1.8.0_422",                                 8},
    {"Zulu 8u502",              nullptr,                                     "1.8.0_502",  "Azul Systems, Inc.", "1.8.0_502",                                 8},
    {"Oracle 8u391",            "1.8.0_391-b13",                             "1.8.0_391",  nullptr,              "1.8.0_391-b13",                             8},
    {"Oracle 9.0.4",            nullptr,                                     "9.0.4",      nullptr,              "9.0.4",                                     9},
    {"Ubuntu 9",                "9-internal+0-2016-04-14-195246.buildd.src", "9",          nullptr,              "9-internal+0-2016-04-14-195246.buildd.src", 9},
    {"OpenJDK 10.0.2",          nullptr,                                     "10.0.2",     "Oracle Corporation", "10.0.2",                                    10},
    {"Image of 11.0.6",         nullptr,                                     "11.0.6",     nullptr,              "11.0.6",                                    11},
    {"AdoptOpenJDK 11.0.8",     nullptr,                                     "11.0.8",     "AdoptOpenJDK",       "11.0.8",                                    11},
    {"Corretto 11.0.8",         nullptr,                                     "11.0.8",     "Amazon.com Inc.",    "11.0.8",                                    11},
    {"Liberica 11.0.8",         nullptr,                                     "11.0.8",     "BellSoft",           "11.0.8",                                    11},
    {"SapMachine 11.0.8",       nullptr,                                     "11.0.8",     "SAP SE",             "11.0.8",                                    11},
    {"Zulu 11.0.8",             nullptr,                                     "11.0.8",     "Azul Systems, Inc.", "11.0.8",                                    11},
    {"Ubuntu 11.0.9.1",         nullptr,                                     "11.0.9.1",   "Ubuntu",             "11.0.9.1",                                  11},
    {"AdoptOpenJDK 11.0.10",    nullptr,                                     "11.0.10",    "AdoptOpenJDK",       "11.0.10",                                   11},
    {"JBR 11.0.10",             nullptr,                                     "11.0.10",    "JetBrains s.r.o.",   "11.0.10",                                   11},
    {"Image of 11.0.15",        nullptr,                                     "11.0.15",    nullptr,              "11.0.15",                                   11},
    {"Dragonwell 11.0.20",      "11.0.20.16+8-GA",                           "11.0.20.16", "Alibaba",            "11.0.20.16+8-GA",                           11},
    {"Oracle 12.0.2",           nullptr,                                     "12.0.2",     "Oracle Corporation", "12.0.2",                                    12},
    {"AdoptOpenJDK 13.0.1",     nullptr,                                     "13.0.1",     "AdoptOpenJDK",       "13.0.1",                                    13},
    {"OpenJDK 14.0.2",          nullptr,                                     "14.0.2",     "Oracle Corporation", "14.0.2",                                    14},
    {"AdoptOpenJDK 15",         nullptr,                                     "15",         "AdoptOpenJDK",       "15",                                        15},
    {"OpenJDK 16.0.2",          nullptr,                                     "16.0.2",     "Oracle Corporation", "16.0.2",                                    16},
    {"Image of 17",             nullptr,                                     "17",         nullptr,              "17",                                        17},
    {"Image of 17.0.2",         nullptr,                                     "17.0.2",     nullptr,              "17.0.2",                                    17},
    {"GraalVM CE 17.0.5",       "17.0.5+8-jvmci-22.3-b08",                   "17.0.5",     "GraalVM Community",  "17.0.5+8-jvmci-22.3-b08",                   17},
    {"Image of 17.0.8",         nullptr,                                     "17.0.8",     nullptr,              "17.0.8",                                    17},
    {"Microsoft 17.0.8",        "17.0.8+7-LTS",                              "17.0.8",     "Microsoft",          "17.0.8+7-LTS",                              17},
    {"Semeru 17.0.9",           "17.0.9+9",                                  "17.0.9",     "IBM Corporation",    "17.0.9+9",                                  17},
    {"Oracle 17.0.9",           "17.0.9+11-LTS-201",                         "17.0.9",     "Oracle Corporation", "17.0.9+11-LTS-201",                         17},
    {"Liberica 17.0.10",        "17.0.10+13-LTS",                            "17.0.10",    "BellSoft",           "17.0.10+13-LTS",                            17},
    {"Image of 17.0.13",        nullptr,                                     "17.0.13",    nullptr,              "17.0.13",                                   17},
    {"Debian 17.0.15",          "17.0.15+6-Debian-1deb12u1",                 "17.0.15",    "Debian",             "17.0.15+6-Debian-1deb12u1",                 17},
    {"Temurin 17.0.20.1",       "17.0.20.1+1",                               "17.0.20.1",  "Eclipse Adoptium",   "17.0.20.1+1",                               17},
    {"Loom 19",                 "19-loom+6-625",                             "19",         "Oracle Corporation", "19-loom+6-625",                             19},
    {"Oracle 20",               "20.0.2+9-78",                               "20.0.2",     "Oracle Corporation", "20.0.2+9-78",                               20},
    {"GraalVM 21.0.1",          "21.0.1+12-LTS-jvmci-23.1-b19",              "21.0.1",     "Oracle Corporation", "21.0.1+12-LTS-jvmci-23.1-b19",              21},
    {"Red Hat 21.0.1",          "21.0.1+12-LTS",                             "21.0.1",     "Red Hat, Inc.",      "21.0.1+12-LTS",                             21},
    {"Image of 21.0.3",         nullptr,                                     "21.0.3",     nullptr,              "21.0.3",                                    21},
    {"Temurin 21.0.4",          "21.0.4+7-LTS",                              "21.0.4",     "Eclipse Adoptium",   "21.0.4+7-LTS",                              21},
    {"JBR 21.0.5",              "21.0.5+8-b631.28",                          "21.0.5",     "JetBrains s.r.o.",   "21.0.5+8-b631.28",                          21},
    {"Image of 21.0.6",         nullptr,                                     "21.0.6",     nullptr,              "21.0.6",                                    21},
    {"Corretto 21.0.8",         "21.0.8+9-LTS",                              "21.0.8",     "Amazon.com Inc.",    "21.0.8+9-LTS",                              21},
    {"SapMachine 22",           "22.0.2+9-sapmachine",                       "22.0.2",     "SAP SE",             "22.0.2+9-sapmachine",                       22},
    {"Oracle 23.0.2",           "23.0.2+7-58",                               "23.0.2",     "Oracle Corporation", "23.0.2+7-58",                               23},
    {"OpenJDK 25 early access", "25-ea+12-1188",                             "25",         "Oracle Corporation", "25-ea+12-1188",                             25},
    {"Own build of 25",         "25-internal-adhoc.user.jdk",                "25",         "N/A",                "25-internal-adhoc.user.jdk",                25},
    {"Temurin 25.0.3",          "25.0.3+9-LTS",                              "25.0.3",     "Eclipse Adoptium",   "25.0.3+9-LTS",                              25},
};
// clang-format on

}  // namespace tests
