// Whole-file I/O on POSIX descriptors, with the errno values of failed calls
// translated to the automation runtime's file error numbers:
//
//   ENOENT                                  53 File not found (reading, folder exists)
//   ENOENT (folder missing or writing), ENOTDIR            76 Path not found
//   EACCES, EPERM, EROFS, ETXTBSY, EBUSY    70 Permission denied
//   ENOSPC, EDQUOT, EFBIG                   61 Disk full
//   EMFILE, ENFILE                          67 Too many files
//   EIO                                     57 Device I/O error
//   ENXIO, ENODEV                           68 Device unavailable
//   EEXIST                                  58 File already exists
//   ENOMEM                                  7  Out of memory
//   ENAMETOOLONG, EINVAL                    52 Bad file name or number
//   EISDIR and everything else              75 Path/File access error
//
// Descriptors are opened non-blocking so that a FIFO without a partner fails
// or reads as empty instead of hanging; regular files ignore the flag.
#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core/error_frame.h"

namespace crvlib::platform {
namespace {

constexpr int32_t kBadFileName = 52;
constexpr int32_t kFileNotFound = 53;
constexpr int32_t kDeviceIoError = 57;
constexpr int32_t kFileAlreadyExists = 58;
constexpr int32_t kDiskFull = 61;
constexpr int32_t kInputPastEndOfFile = 62;
constexpr int32_t kTooManyFiles = 67;
constexpr int32_t kDeviceUnavailable = 68;
constexpr int32_t kPermissionDenied = 70;
constexpr int32_t kPathFileAccessError = 75;
constexpr int32_t kPathNotFound = 76;

// Closes the descriptor on every path out, the error paths included: there
// is no table of open files here for a forgotten descriptor to stay in.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  // Closes now so that a failing close (a full disk on a network file
  // system) can be reported.
  int Close() {
    int rc = ::close(fd_);
    fd_ = -1;
    return rc;
  }

 private:
  int fd_;
};

// True when the folder that would hold `path` exists.
bool FolderExists(std::string_view path) {
  size_t end = path.size();
  while (end > 1 && path[end - 1] == '/') --end;  // "dir/name/" names "dir/name"
  size_t slash = path.rfind('/', end - 1);
  std::string folder;
  if (slash == std::string_view::npos) {
    folder = ".";
  } else {
    folder = std::string(path.substr(0, slash == 0 ? 1 : slash));
  }
  struct stat st;
  return ::stat(folder.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// A name the file system cannot be asked about at all.
std::string CheckedName(std::string_view path) {
  if (path.empty() || path.find('\0') != std::string_view::npos) internal::Raise(kBadFileName);
  return std::string(path);
}

[[noreturn]] void RaiseFileError(int err, std::string_view path, bool reading) {
  internal::Raise(FileErrorNumber(err, path, reading));
}

}  // namespace

int32_t FileErrorNumber(int err, std::string_view path, bool reading) {
  switch (err) {
    case ENOENT:
      return reading && FolderExists(path) ? kFileNotFound : kPathNotFound;
    case ENOTDIR:
      return kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
      return kPermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case EIO:
      return kDeviceIoError;
    case ENXIO:
    case ENODEV:
      return kDeviceUnavailable;
    case EEXIST:
      return kFileAlreadyExists;
    case ENOMEM:
      return internal::kOutOfMemory;
    case ENAMETOOLONG:
    case EINVAL:
      return kBadFileName;
    default:
      return kPathFileAccessError;
  }
}

std::string ReadWholeFile(std::string_view path, int64_t max_bytes) {
  std::string name = CheckedName(path);
  Descriptor fd(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (fd.get() < 0) RaiseFileError(errno, path, true);
  struct stat st;
  if (::fstat(fd.get(), &st) != 0) RaiseFileError(errno, path, true);
  if (S_ISDIR(st.st_mode)) internal::Raise(kPathFileAccessError);
  int64_t length = S_ISREG(st.st_mode) ? static_cast<int64_t>(st.st_size) : 0;
  if (length > max_bytes) internal::Raise(internal::kOutOfStringSpace);

  std::string bytes(static_cast<size_t>(length), '\0');
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::read(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      RaiseFileError(errno, path, true);
    }
    // The file shrank after its length was taken: the read asked for more
    // than is there.
    if (n == 0) internal::Raise(kInputPastEndOfFile);
    done += static_cast<size_t>(n);
  }
  return bytes;
}

void WriteWholeFile(std::string_view path, std::string_view bytes) {
  std::string name = CheckedName(path);
  Descriptor fd(
      ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
  if (fd.get() < 0) RaiseFileError(errno, path, false);
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      RaiseFileError(errno, path, false);
    }
    done += static_cast<size_t>(n);
  }
  if (fd.Close() != 0 && errno != EINTR) RaiseFileError(errno, path, false);
}

}  // namespace crvlib::platform
