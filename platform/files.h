// Whole-file reading and writing for the text-file routines. Names are UTF-8
// paths; failures raise the automation runtime's file errors (53 file not
// found, 76 path not found, 70 permission denied, …), never errno values.
//
//   WriteWholeFile("/tmp/a.txt", "hi\r\n");
//   ReadWholeFile("/tmp/a.txt")      == "hi\r\n"
//   ReadWholeFile("/tmp/missing")    raises 53
#ifndef CRVLIB_PLATFORM_FILES_H_
#define CRVLIB_PLATFORM_FILES_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace crvlib::platform {

// The runtime error number for the errno `err` of a failed open, read or
// write. `reading` tells an open for input (where ENOENT may be the file or
// its folder) from an open for output; `path` is looked at only for ENOENT.
int32_t FileErrorNumber(int err, std::string_view path, bool reading);

// The whole content of the file `path`, as many bytes as the file system
// reports for its length. A file that reports length 0 (a pipe, a device, a
// /proc file) reads as "". A file longer than `max_bytes` raises 14 before
// anything is read.
std::string ReadWholeFile(std::string_view path, int64_t max_bytes);

// Creates or truncates `path` and writes `bytes`.
void WriteWholeFile(std::string_view path, std::string_view bytes);

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_FILES_H_
