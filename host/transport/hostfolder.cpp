#include "hostfolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace {

std::string environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

bool isPrivate(int folder)
{
    struct stat status = {};
    return fstat(folder, &status) == 0 && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

} // namespace

std::string hostFolderPath()
{
    if (std::string folder = environment("VESMORA_HOST_DIR"); !folder.empty())
        return folder;
    if (const std::string runtime = environment("XDG_RUNTIME_DIR"); !runtime.empty())
        return runtime + "/vesmora";
    return "/tmp/vesmora-" + std::to_string(geteuid());
}

int openHostFolder(UniqueFd &out)
{
    return openPrivateFolder(AT_FDCWD, hostFolderPath(), out);
}

int openPrivateFolder(int parent, const std::string &name, UniqueFd &out)
{
    if (mkdirat(parent, name.c_str(), 0700) != 0 && errno != EEXIST)
        return errno;
    // Somebody else's symbolic link must not lead us out of the folder we judge.
    UniqueFd folder(openat(parent, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder)
        return errno == ENOTDIR || errno == ELOOP ? EACCES : errno;
    if (!isPrivate(folder.get()))
        return EACCES;
    out = std::move(folder);
    return 0;
}
