#ifndef HOSTFOLDER_H
#define HOSTFOLDER_H

#include "uniquefd.h"

#include <string>

/// Where devices and pipes live: VESMORA_HOST_DIR if that environment variable is set, else vesmora
/// in XDG_RUNTIME_DIR, else /tmp/vesmora-<uid>.
std::string hostFolderPath();

/// Opens the folder for use as the base of the ...at() calls, and makes it if it is missing.
/// Returns an errno, 0 for success. A folder that another user owns or may enter is refused with
/// EACCES.
int openHostFolder(UniqueFd &out);

/// Opens @p name in @p parent under the same rule.
int openPrivateFolder(int parent, const std::string &name, UniqueFd &out);

#endif
