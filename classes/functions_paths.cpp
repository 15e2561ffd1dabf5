// The path routines of Functions: splitting a Windows path and file name
// into drive, folder path, file name and extension, and the user's documents
// folder.
#include "crvlib/functions.h"
#include "platform/documents_folder.h"

namespace crvlib {

// The documents folder, from the platform; there is deliberately no error
// frame here, so anything raised reaches the caller as it was raised.
String Functions::GetMyDocumentsPath() {
  return String::FromUtf8(platform::DocumentsFolder());
}

}  // namespace crvlib
