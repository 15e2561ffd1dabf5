// The user's documents folder, as the desktop names it.
//
//   DocumentsFolder() == "/home/ann/Documents/"   (no user-dirs entry)
//   DocumentsFolder() == "/home/ann/Dokumente/"   (XDG_DOCUMENTS_DIR="$HOME/Dokumente")
#ifndef CRVLIB_PLATFORM_DOCUMENTS_FOLDER_H_
#define CRVLIB_PLATFORM_DOCUMENTS_FOLDER_H_

#include <string>

namespace crvlib::platform {

// The documents folder as a UTF-8 path with a trailing "/", created (with its
// missing parents) when it does not exist yet. The folder is
// XDG_DOCUMENTS_DIR from $XDG_CONFIG_HOME/user-dirs.dirs (~/.config when
// XDG_CONFIG_HOME is unset or relative), else $HOME/Documents. "" when there
// is no home folder, or the folder cannot be created or is not a folder.
std::string DocumentsFolder();

// Whether this system's paths begin with a drive letter ("C:\\..."). Where
// they do not, a documents folder has no drive to split off.
bool PathsHaveDriveLetters();

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_DOCUMENTS_FOLDER_H_
