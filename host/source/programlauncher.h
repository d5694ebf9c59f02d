#ifndef PROGRAMLAUNCHER_H
#define PROGRAMLAUNCHER_H

#include <string>
#include <vector>

/// Finds a program: @p name itself if it contains a slash, else in the folders of PATH. Returns an
/// errno: ENOENT when there is none, EACCES when what was found may not be executed.
int findProgram(const std::string &name, std::string &out);

/// Starts the program @p path in a session of its own, with neither input nor output, and lets it
/// go. @p arguments are without the program's name; an empty @p folder is the current one.
/// Returns the errno of what failed, 0 for success.
int launchDetached(const std::string &path, const std::vector<std::string> &arguments,
                   const std::string &folder);

#endif
