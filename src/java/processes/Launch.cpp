#include "java/processes/Launch.h"

#include <torvan/java/Failure.h>

#include <string>
#include <system_error>
#include <utility>

#include "java/processes/ArgumentFile.h"
#include "java/processes/Environment.h"
#include "java/processes/JavaProgram.h"

namespace torvan::java::detail {

namespace {

using InputKind = InputSettings::Kind;
using OutputKind = OutputSettings::Kind;

// Java before 18 goes by file.encoding or the first two of the stream properties, 18 and later by the other ones. The
// host's own options come after these and win.
constexpr const char* EncodingOptions[] = {
    "-Dfile.encoding=UTF-8",   "-Dsun.stdout.encoding=UTF-8", "-Dsun.stderr.encoding=UTF-8",
    "-Dstdout.encoding=UTF-8", "-Dstderr.encoding=UTF-8",     "-Dstdin.encoding=UTF-8",
};

std::vector<NativeText> ArgumentsOf(const ProgramSettings& settings) {
  std::vector<NativeText> arguments;
  for (const char* option : EncodingOptions) arguments.push_back(ToNative(option));
  for (const std::string& option : settings.options) arguments.push_back(ToNative(option));
  if (!settings.classPath.empty()) {
    NativeText classPath;
    for (const std::filesystem::path& part : settings.classPath) {
      if (!classPath.empty()) classPath += PathListSeparator;
      classPath += part.native();
    }
    arguments.push_back(ToNative("-cp"));
    arguments.push_back(std::move(classPath));
  }
  if (settings.jar.empty()) {
    arguments.push_back(ToNative(settings.mainClass));
  } else {
    arguments.push_back(ToNative("-jar"));
    arguments.push_back(settings.jar.native());
  }
  for (const std::string& argument : settings.arguments) arguments.push_back(ToNative(argument));
  return arguments;
}

StreamPlan PlanOf(const OutputSettings& output) {
  switch (output.kind) {
    case OutputKind::Inherit:
      return {StreamPlan::Kind::Inherit, {}};
    case OutputKind::File:
      return {StreamPlan::Kind::File, output.file};
    default:
      return {StreamPlan::Kind::Pipe, {}};
  }
}

StreamPlan PlanOfInput(const ProgramSettings& settings) {
  if (settings.input.kind == InputKind::File) {
    if (settings.keepInputOpen) {
      throw Misuse("java/processes/Launch", __LINE__, "an input that is a file cannot be kept open for more");
    }
    return {StreamPlan::Kind::File, settings.input.file};
  }
  const bool isNothing = settings.input.kind == InputKind::Nothing && !settings.keepInputOpen;
  return {isNothing ? StreamPlan::Kind::Nothing : StreamPlan::Kind::Pipe, {}};
}

StartPlan PlanOf(const ProgramSettings& settings) {
  if (!settings.jar.empty() && !settings.classPath.empty()) {
    throw Misuse("java/processes/Launch", __LINE__,
                 "a program that is a jar brings its own class path: Java would ignore this one");
  }
  StartPlan plan;
  plan.streams[0] = PlanOfInput(settings);
  plan.streams[1] = PlanOf(settings.output);
  plan.streams[2] = PlanOf(settings.error);
  JavaProgram java = FindJava(settings);
  plan.program = std::move(java.file);
  plan.readsArgumentFiles = java.readsArgumentFiles;
  plan.arguments = ArgumentsOf(settings);
  plan.environment = EnvironmentOf(settings);
  plan.folder = settings.folder;
  std::error_code error;
  if (!settings.jar.empty() && !std::filesystem::is_regular_file(settings.jar, error)) {
    const std::string reason = error ? ReasonOf(error) : "it is no file";
    throw StartFailure("java/processes/Launch", __LINE__,
                       CannotStart(plan, "find the jar \"" + ToText(settings.jar) + "\"", reason));
  }
  return plan;
}

}  // namespace

Launched Launch(const ProgramSettings& settings) {
  StartPlan plan = PlanOf(settings);
  Launched launched;
  try {
    launched.child = std::make_unique<Child>(plan);
    return launched;
  } catch (const TooLong& tooLong) {
    if (!plan.readsArgumentFiles) {
      throw StartFailure("java/processes/Launch", __LINE__,
                         std::string(tooLong.what()) + "; only Java 9 and later can read them from a file");
    }
  }
  std::string file;
  for (const NativeText& argument : plan.arguments) AppendToArgumentFile(file, ToArgumentFileBytes(argument));
  launched.arguments = std::make_unique<TemporaryFile>(file);
  plan.arguments = {ToNative("@") + launched.arguments->Path()};
  launched.child = std::make_unique<Child>(plan);
  return launched;
}

std::uint32_t StartDetached(const ProgramSettings& settings) {
  for (const OutputSettings* output : {&settings.output, &settings.error}) {
    if (output->kind != OutputKind::Lines) continue;
    throw Misuse("java/processes/Launch", __LINE__, "no function can be called for a program that runs detached");
  }
  if (PlanOfInput(settings).kind == StreamPlan::Kind::Pipe) {
    throw Misuse("java/processes/Launch", __LINE__, "the input of a program that runs detached is empty or a file");
  }
  if (settings.timeLimit) {
    throw Misuse("java/processes/Launch", __LINE__, "the time limit of a program that runs detached cannot be kept");
  }
  StartPlan plan = PlanOf(settings);
  for (StreamPlan& stream : plan.streams) {
    if (stream.kind == StreamPlan::Kind::Pipe) stream.kind = StreamPlan::Kind::Nothing;
  }
  return StartApart(plan);
}

}  // namespace torvan::java::detail
