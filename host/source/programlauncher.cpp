#include "programlauncher.h"

#include "uniquefd.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace {

int judge(const std::string &path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return errno == EACCES ? EACCES : ENOENT;
    return S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0 ? 0 : EACCES;
}

void silenceStandardStreams()
{
    const int nothing = open("/dev/null", O_RDWR);
    for (int stream = STDIN_FILENO; nothing >= 0 && stream <= STDERR_FILENO; ++stream)
        dup2(nothing, stream);
    if (nothing > STDERR_FILENO)
        close(nothing);
}

/// The new process, from fork to exec. Other threads were not copied and may have held locks: only
/// async-signal-safe calls, no allocation.
[[noreturn]] void becomeProgram(const char *path, char *const *arguments, const char *folder,
                                int report)
{
    silenceStandardStreams();
    if (folder[0] == '\0' || chdir(folder) == 0)
        execv(path, arguments);
    const int number = errno;
    // Nobody is left to tell if even this fails.
    [[maybe_unused]] const ssize_t written = write(report, &number, sizeof number);
    _exit(127);
}

/// A process between, which ends at once, leaves the program to init: no zombie, nothing to wait
/// for.
[[noreturn]] void becomeGoBetween(const char *path, char *const *arguments, const char *folder,
                                  int report)
{
    setsid();
    const pid_t program = fork();
    if (program == 0)
        becomeProgram(path, arguments, folder, report);
    const int number = errno;
    if (program < 0) {
        [[maybe_unused]] const ssize_t written = write(report, &number, sizeof number);
    }
    _exit(0);
}

/// The errno that the new process reports; its pipe closes without a word when exec succeeds.
int awaitReport(int fd)
{
    int number = 0;
    ssize_t received = 0;
    do {
        received = read(fd, &number, sizeof number);
    } while (received < 0 && errno == EINTR);
    return received == sizeof number ? number : 0;
}

void reap(pid_t child)
{
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) { }
}

std::vector<char *> argumentVector(const std::string &path,
                                   const std::vector<std::string> &arguments)
{
    // exec takes mutable strings for the sake of old C and does not change them.
    std::vector<char *> result = {const_cast<char *>(path.c_str())};
    for (const std::string &argument : arguments)
        result.push_back(const_cast<char *>(argument.c_str()));
    result.push_back(nullptr);
    return result;
}

} // namespace

int findProgram(const std::string &name, std::string &out)
{
    out = name;
    if (name.find('/') != std::string::npos)
        return judge(name);
    const char *path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    int result = ENOENT;
    for (std::string folder; !name.empty() && std::getline(folders, folder, ':');) {
        out = (folder.empty() ? "." : folder) + "/" + name;
        const int judgement = judge(out);
        if (judgement == 0)
            return 0;
        if (judgement == EACCES)
            result = EACCES;
    }
    return result;
}

int launchDetached(const std::string &path, const std::vector<std::string> &arguments,
                   const std::string &folder)
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return errno;
    const UniqueFd readEnd(ends[0]);
    UniqueFd writeEnd(ends[1]);
    const std::vector<char *> argv = argumentVector(path, arguments);
    const pid_t child = fork();
    if (child == 0)
        becomeGoBetween(path.c_str(), argv.data(), folder.c_str(), writeEnd.get());
    if (child < 0)
        return errno;
    writeEnd.reset();
    const int number = awaitReport(readEnd.get());
    reap(child);
    return number;
}
