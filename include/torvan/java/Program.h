// A Java program that is to run in its own process.
#pragma once

#include <torvan/java/Failure.h>
#include <torvan/java/Runtime.h>
#include <torvan/java/detail/ProgramSettings.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java {

// How a Java program is to run: what to run, with which Java, in which environment.
// Run(program) runs it to its end, Start(program) starts it (torvan/java/Process.h). Each setting changes the program
// and returns it. Copies are independent. Texts are UTF-8 and arrive in Java as they are; a NUL in one, or what is not
// UTF-8, is a Misuse. Output and error are captured unless a setting says otherwise, and the input is empty. The
// program gets the host's environment, and its locale and encodings are made UTF-8; settings override that. One thread
// at a time may change a program; running it changes nothing, and reads the environment, which no other thread may
// change meanwhile.
class Program {
 public:
  // A relative jar or class path part is relative to the host's current folder, also with another Folder().
  static Program Jar(const std::filesystem::path& jar);
  // The name of a class, such as com.example.Main. One that Java would take for an option is a Misuse.
  static Program MainClass(std::string_view name);

  // The Java that runs it, by its home folder or as it was found. By default the first one of FindRuntimes() that has a
  // Java(). One without it that is set here is a StartFailure when the program is run. The last one counts.
  Program& Runtime(const std::filesystem::path& home);
  Program& Runtime(const java::Runtime& runtime);
  // Adds folders and jars, also "folder/*". Running a Jar() with a class path is a Misuse, because a jar has its own.
  Program& ClassPath(const std::vector<std::filesystem::path>& parts);
  // Adds an option of the VM, such as "-Xmx1g" or "--add-modules=java.sql". It begins with "-".
  Program& Option(std::string_view option);
  // Adds a system property.
  Program& Property(std::string_view name, std::string_view value);
  // Adds arguments. Any text arrives: spaces, quotes, line ends, wildcards, empty ones. When they are too long for the
  // system, Java 9 and later read them from an argument file. On Windows java.exe reads its command line in the code
  // page of the system: what that lacks is a Misuse when the program is run.
  Program& Arguments(const std::vector<std::string>& arguments);

  // Sets a variable of the program's environment.
  Program& Environment(std::string_view name, std::string_view value);
  Program& RemoveEnvironment(std::string_view name);
  // Clears the environment: the program gets only what is set after this. On Windows SystemRoot stays unless it is
  // removed after this: programs need it to load the system's own libraries.
  Program& ClearEnvironment();
  // The folder that it runs in; by default the host's current one. A relative one is below the folder that is current
  // when the program is run, as are relative files for input and output.
  Program& Folder(const std::filesystem::path& folder);

  // What the program reads: bytes as they are, a file, or what a function returns until it returns nullopt.
  // The last setting counts. The function is called when the program can take more, on the thread that Run() was called
  // on, or on the process's own after Start(). While it runs, nothing else is read or written. It waits itself until it
  // has something; after an empty text it is asked again a moment later. On Linux a file may be a named pipe whose
  // other end another program has open or waits to open; otherwise the start is refused, here and for the outputs.
  Program& Input(std::string_view text);
  Program& InputFile(const std::filesystem::path& file);
  Program& InputFrom(std::function<std::optional<std::string>()> next);
  // For Start(): the input stays open for Process::Write() after the text or the function's last piece.
  Program& KeepInputOpen();

  // Where the output goes instead of Outcome::output: line by line to a function (without the line's end), to the
  // host's own output, or to a file, which is made or emptied before the program is started. The last one counts.
  // Functions are called on the thread that InputFrom() names. One that throws ends the program with all it has
  // started; the exception comes out of Run() or Process::Wait().
  Program& OnOutputLine(std::function<void(std::string_view)> onLine);
  Program& InheritOutput();
  Program& OutputFile(const std::filesystem::path& file);
  // The same for the error output. Both may go to one file.
  Program& OnErrorLine(std::function<void(std::string_view)> onLine);
  Program& InheritError();
  Program& ErrorFile(const std::filesystem::path& file);

  // How long it may run, from its start. Then it is asked to stop, has two seconds for that, and is killed with all it
  // has started: Ended::TimedOut. On Windows it is killed at once where it cannot be asked (see Process::Stop()). While
  // a function of the program runs, the limit waits for it: the program may run on until the function has returned.
  Program& TimeLimit(std::chrono::milliseconds limit);

  // Starts it so that it outlives this process, and returns its process id.
  // It is not a child of this process, so there is nothing to wait for; only a host that is process 1 or a subreaper
  // gets it as a child and has to reap it. On Windows it leaves this process's job; where that job lets no process
  // leave, it stays in it, and ends when the job's processes are killed. Output is dropped unless it is inherited or
  // goes to a file, and the input is empty or a file; other input, functions and a time limit are a Misuse. Throws a
  // StartFailure as Start() does, also when its arguments are too long for the system.
  std::uint32_t Detached() const;

  const detail::ProgramSettings& Settings() const noexcept { return m_settings; }

 private:
  Program() = default;

  detail::ProgramSettings m_settings;
};

}  // namespace torvan::java
