#include "platform/processes.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/posix/host_paths.h"

namespace bv::platform {

namespace {

// A child that nobody asks about any more is still waited for, or it would stay behind as a zombie.
void Collect(pid_t child) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

class PosixProcess final : public Process {
  public:
    explicit PosixProcess(pid_t child) : child_(child) {}
    PosixProcess(const PosixProcess&) = delete;
    PosixProcess& operator=(const PosixProcess&) = delete;

    ~PosixProcess() override {
        if (!PosixProcess::IsRunning()) return;
        try {
            std::thread(Collect, child_).detach();
        } catch (const std::system_error&) {
            // Without a thread the zombie stays until this process ends.
        }
    }

    bool IsRunning() override {
        while (running_) {
            const pid_t result = waitpid(child_, nullptr, WNOHANG);
            if (result == 0) return true;
            running_ = result < 0 && errno == EINTR;
        }
        return false;
    }

  private:
    pid_t child_;
    bool running_ = true;
};

// The words of a command line. Blanks part them, double quotes hold blanks together; "\" is a character as any
// other, so that a quoted path may end in it.
std::vector<std::string> SplitCommandLine(std::string_view line) {
    std::vector<std::string> words;
    for (line = SkipBlanks(line); !line.empty(); line = SkipBlanks(line)) {
        std::string word;
        bool quoted = false;
        while (!line.empty() && (quoted || !IsBlank(line.front()))) {
            if (line.front() == '"') {
                quoted = !quoted;
            } else {
                word += line.front();
            }
            line.remove_prefix(1);
        }
        words.push_back(word);
    }
    return words;
}

// The file to run, as a host path: looked for beside this program and in the current directory when its name has
// no path, at last left to the search path.
std::string FindProgram(const std::string& name) {
    const bool bare = name.find_first_of("\\/:") == std::string::npos;
    const std::string places[] = {TheEnvironment().ProgramDirectory() + "\\" + name, ".\\" + name};
    if (!bare) return ToHostPath(name).Path;
    for (const std::string& place : places) {
        if (Service<FileSystem>::System().Find(place)) return ToHostPath(place).Path;
    }
    return name;
}

StartResult StartProgram(const std::string& commandLine) {
    std::vector<std::string> words = SplitCommandLine(commandLine);
    const std::string program = words.empty() ? "" : FindProgram(words.front());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ);
    if (error != 0) return {nullptr, static_cast<unsigned long>(error)};
    return {std::make_unique<PosixProcess>(child), 0};
}

class PosixProcesses final : public Processes {
  public:
    StartResult Start(const std::string& commandLine) override { return StartProgram(commandLine); }
    StartResult StartRestored(const std::string& commandLine) override { return StartProgram(commandLine); }
};

} // namespace

template <>
Processes& Service<Processes>::System() {
    static PosixProcesses processes;
    return processes;
}

} // namespace bv::platform
