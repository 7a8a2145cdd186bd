// Release files of real runtimes. Of JBR, GraalVM and Semeru the lists of modules, commits and parts are shortened.
#pragma once

#include <ostream>

namespace tests {

struct WholeRelease {
  const char* name;
  const char* version;  // the one that counts
  const char* vendor;
  const char* libc;
  const char* file;
};

inline std::ostream& operator<<(std::ostream& out, const WholeRelease& release) { return out << release.name; }

// clang-format off
inline const WholeRelease WholeReleases[] = {
    {"Oracle 8u101, Linux", "1.8.0_101", "", "",
     "JAVA_VERSION=\"1.8.0_101\"\n"
     "OS_NAME=\"Linux\"\n"
     "OS_VERSION=\"2.6\"\n"
     "OS_ARCH=\"amd64\"\n"
     "SOURCE=\" .:e983a19c6439 corba:2bb2aec4b3e5 deploy:2390a2618e98 hotspot:77df35b662ed "
     "hotspot/make/closed:40ee8a558775 hotspot/src/closed:710cffeb3c01 hotspot/test/closed:d6cfbcb20a1e "
     "install:68eb511e9151 jaxp:8ee36eca2124 jaxws:287f9e9d45cc jdk:827b2350d7f8 jdk/make/closed:53a5d48a69b0 "
     "jdk/src/closed:06c649fef4a8 jdk/test/closed:556c76f337b9 langtools:8dc8f71216bf nashorn:44e4e6cbe15b "
     "pubs:388b7b93b2c0 sponsors:1b72bbdb30d6\"\n"
     "BUILD_TYPE=\"commercial\"\n"},
    {"AdoptOpenJDK 8u282, macOS", "1.8.0_282", "AdoptOpenJDK", "",
     "JAVA_VERSION=\"1.8.0_282\"\n"
     "OS_NAME=\"Darwin\"\n"
     "OS_VERSION=\"11.2\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "SOURCE=\" .:OpenJDK: bece19ab82:\"\n"
     "IMPLEMENTOR=\"AdoptOpenJDK\"\n"
     "BUILD_SOURCE=\"git:10223734\"\n"
     "FULL_VERSION=\"1.8.0_282-b08\"\n"
     "SEMANTIC_VERSION=\"8.0.282+8\"\n"
     "BUILD_INFO=\"OS: Mac OS X Version: 10.14.6 18G84\"\n"
     "JVM_VARIANT=\"Hotspot\"\n"
     "JVM_VERSION=\"25.282-b08\"\n"
     "IMAGE_TYPE=\"JDK\"\n"},
    {"JBR 11.0.10, Windows", "11.0.10", "JetBrains s.r.o.", "",
     "MODULES=\"java.base\"\n"
     "IMPLEMENTOR=\"JetBrains s.r.o.\"\n"
     "SOURCE=\".\\:git\\:58e267d9f35a+ jcef_git\\:git\\:e09d9c4a783e\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "IMPLEMENTOR_VERSION=\"JBR-11.0.10.9-1304.4-dcevm\"\n"
     "OS_NAME=\"Windows\"\n"
     "JAVA_VERSION=\"11.0.10\"\n"},
    {"GraalVM CE 21.1.0, Windows", "16.0.1", "GraalVM Community", "default",
     "IMPLEMENTOR=\"GraalVM Community\"\n"
     "JAVA_VERSION=\"16.0.1\"\n"
     "JAVA_VERSION_DATE=\"2021-04-20\"\n"
     "LIBC=\"default\"\n"
     "MODULES=\"java.base\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "OS_NAME=\"Windows\"\n"
     "SOURCE=\".:git:8387de06b765+ substratevm:dc4d2d6bdda1e7262bbae3291475e02fd498f382 "
     "truffle:dc4d2d6bdda1e7262bbae3291475e02fd498f382\"\n"
     "GRAALVM_VERSION=\"21.1.0\"\n"
     "COMMIT_INFO={}\n"
     "component_catalog=\"\"\n"},
    {"Semeru 16.0.2, macOS", "16.0.2", "International Business Machines Corporation", "default",
     "IMPLEMENTOR=\"International Business Machines Corporation\"\n"
     "IMPLEMENTOR_VERSION=\"16.0.2.0\"\n"
     "JAVA_VERSION=\"16.0.2\"\n"
     "JAVA_VERSION_DATE=\"2021-07-20\"\n"
     "LIBC=\"default\"\n"
     "MODULES=\"java.base\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "OS_NAME=\"Darwin\"\n"
     "SOURCE=\"OpenJDK:34df42439f3 OpenJ9:1851b0074 OMR:9db1c870d\"\n"
     "BUILD_SOURCE=\"git:03546ff\"\n"
     "FULL_VERSION=\"16.0.2+7\"\n"
     "SEMANTIC_VERSION=\"16.0.2+7\"\n"
     "BUILD_INFO=\"OS: Mac OS X Version: 10.14.6 18G9216\"\n"
     "JVM_VARIANT=\"Openj9\"\n"
     "JVM_VERSION=\"openj9-0.27.0\"\n"
     "HEAP_SIZE=\"Standard\"\n"
     "IMAGE_TYPE=\"JDK\"\n"},
    {"Image of 17.0.8", "17.0.8", "", "",
     "JAVA_VERSION=\"17.0.8\"\n"
     "MODULES=\"java.base java.datatransfer java.xml java.prefs java.desktop\"\n"},
    {"Debian 17.0.15", "17.0.15+6-Debian-1deb12u1", "Debian", "gnu",
     "IMPLEMENTOR=\"Debian\"\n"
     "JAVA_RUNTIME_VERSION=\"17.0.15+6-Debian-1deb12u1\"\n"
     "JAVA_VERSION=\"17.0.15\"\n"
     "JAVA_VERSION_DATE=\"2025-04-15\"\n"
     "LIBC=\"gnu\"\n"
     "MODULES=\"java.base java.compiler java.datatransfer java.xml java.prefs java.desktop java.instrument "
     "java.logging java.management java.security.sasl java.naming java.rmi java.management.rmi java.net.http "
     "java.scripting java.security.jgss java.transaction.xa java.sql java.sql.rowset java.xml.crypto java.se "
     "java.smartcardio jdk.accessibility jdk.internal.jvmstat jdk.attach jdk.charsets jdk.compiler "
     "jdk.crypto.ec jdk.crypto.cryptoki jdk.dynalink jdk.internal.ed jdk.editpad jdk.hotspot.agent "
     "jdk.httpserver jdk.incubator.foreign jdk.incubator.vector jdk.internal.le jdk.internal.opt "
     "jdk.internal.vm.ci jdk.internal.vm.compiler jdk.internal.vm.compiler.management jdk.jartool jdk.javadoc "
     "jdk.jcmd jdk.management jdk.management.agent jdk.jconsole jdk.jdeps jdk.jdwp.agent jdk.jdi jdk.jfr "
     "jdk.jlink jdk.jpackage jdk.jshell jdk.jsobject jdk.jstatd jdk.localedata jdk.management.jfr "
     "jdk.naming.dns jdk.naming.rmi jdk.net jdk.nio.mapmode jdk.random jdk.sctp jdk.security.auth "
     "jdk.security.jgss jdk.unsupported jdk.unsupported.desktop jdk.xml.dom jdk.zipfs\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "OS_NAME=\"Linux\"\n"
     "SOURCE=\"\"\n"},
    {"Oracle 23.0.2, Windows", "23.0.2+7-58", "Oracle Corporation", "default",
     "IMPLEMENTOR=\"Oracle Corporation\"\n"
     "JAVA_RUNTIME_VERSION=\"23.0.2+7-58\"\n"
     "JAVA_VERSION=\"23.0.2\"\n"
     "JAVA_VERSION_DATE=\"2025-01-21\"\n"
     "LIBC=\"default\"\n"
     "MODULES=\"java.base java.compiler java.datatransfer java.xml java.prefs java.desktop java.instrument "
     "java.logging java.management java.security.sasl java.naming java.rmi java.management.rmi java.net.http "
     "java.scripting java.security.jgss java.transaction.xa java.sql java.sql.rowset java.xml.crypto java.se "
     "java.smartcardio jdk.accessibility jdk.internal.jvmstat jdk.attach jdk.charsets jdk.internal.opt "
     "jdk.zipfs jdk.compiler jdk.crypto.cryptoki jdk.crypto.ec jdk.crypto.mscapi jdk.dynalink jdk.internal.ed "
     "jdk.editpad jdk.internal.vm.ci jdk.graal.compiler jdk.graal.compiler.lib jdk.graal.compiler.management "
     "jdk.hotspot.agent jdk.httpserver jdk.incubator.vector jdk.internal.le jdk.internal.md jdk.jartool "
     "jdk.javadoc jdk.jcmd jdk.management jdk.management.agent jdk.jconsole jdk.jdeps jdk.jdwp.agent jdk.jdi "
     "jdk.jfr jdk.jlink jdk.jpackage jdk.jshell jdk.jsobject jdk.jstatd jdk.localedata jdk.management.jfr "
     "jdk.naming.dns jdk.naming.rmi jdk.net jdk.nio.mapmode jdk.sctp jdk.security.auth jdk.security.jgss "
     "jdk.unsupported jdk.unsupported.desktop jdk.xml.dom\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "OS_NAME=\"Windows\"\n"
     "SOURCE=\".:git:3de6199edce8 graal:git:e4b575df2c80 graal-enterprise:git:26dca3ee41dc "
     "mx:git:12267ad74f15 open:git:a13b02ce6f85\"\n"},
    {"Temurin 25.0.3, Linux", "25.0.3+9-LTS", "Eclipse Adoptium", "gnu",
     "IMPLEMENTOR=\"Eclipse Adoptium\"\n"
     "IMPLEMENTOR_VERSION=\"Temurin-25.0.3+9\"\n"
     "JAVA_RUNTIME_VERSION=\"25.0.3+9-LTS\"\n"
     "JAVA_VERSION=\"25.0.3\"\n"
     "JAVA_VERSION_DATE=\"2026-04-21\"\n"
     "LIBC=\"gnu\"\n"
     "MODULES=\"java.base java.compiler java.datatransfer java.xml java.prefs java.desktop java.instrument "
     "java.logging java.management java.security.sasl java.naming java.rmi java.management.rmi java.net.http "
     "java.scripting java.security.jgss java.transaction.xa java.sql java.sql.rowset java.xml.crypto java.se "
     "java.smartcardio jdk.accessibility jdk.internal.jvmstat jdk.attach jdk.charsets jdk.internal.opt "
     "jdk.zipfs jdk.compiler jdk.crypto.cryptoki jdk.crypto.ec jdk.dynalink jdk.internal.ed jdk.editpad "
     "jdk.internal.vm.ci jdk.graal.compiler jdk.graal.compiler.management jdk.hotspot.agent jdk.httpserver "
     "jdk.incubator.vector jdk.internal.le jdk.internal.md jdk.jartool jdk.javadoc jdk.jcmd jdk.management "
     "jdk.management.agent jdk.jconsole jdk.jdeps jdk.jdwp.agent jdk.jdi jdk.jfr jdk.jlink jdk.jpackage "
     "jdk.jshell jdk.jsobject jdk.jstatd jdk.localedata jdk.management.jfr jdk.naming.dns jdk.naming.rmi "
     "jdk.net jdk.nio.mapmode jdk.sctp jdk.security.auth jdk.security.jgss jdk.unsupported "
     "jdk.unsupported.desktop jdk.xml.dom\"\n"
     "OS_ARCH=\"x86_64\"\n"
     "OS_NAME=\"Linux\"\n"
     "SOURCE=\".:git:cda0a1776184\"\n"
     "BUILD_SOURCE=\"git:a612825ee82a20ac872d60958c349854c1f29a8e\"\n"
     "BUILD_SOURCE_REPO=\"https://github.com/adoptium/temurin-build.git\"\n"
     "SOURCE_REPO=\"https://github.com/adoptium/jdk25u.git\"\n"
     "FULL_VERSION=\"25.0.3+9-LTS\"\n"
     "SEMANTIC_VERSION=\"25.0.3+9\"\n"
     "BUILD_INFO=\"OS: Linux Version: 6.8.0-1051-azure\"\n"
     "JVM_VARIANT=\"Hotspot\"\n"
     "JVM_VERSION=\"25.0.3+9-LTS\"\n"
     "IMAGE_TYPE=\"JDK\"\n"},
};
// clang-format on

}  // namespace tests
