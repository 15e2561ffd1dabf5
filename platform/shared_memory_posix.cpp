// Shared memory sections on POSIX shared memory objects, kept alive by their
// users through flock on the object:
//
// - every process that maps a section holds a shared lock on it;
// - the name is removed only by someone holding the exclusive lock, which
//   can be had only when nobody maps the section: on release, a user unmaps
//   and tries for it without waiting, removing the name when it succeeds;
// - an opener that gets the exclusive lock at once is alone, so the section
//   is new, or was left behind by a last user that died (the kernel drops a
//   dead process's locks but not the name); either way it starts afresh;
// - an opener that must wait takes a shared lock, and after any lock checks
//   that the object still has its name: if a releaser removed it meanwhile
//   it opens again, getting a new object.
//
// Because the lock is checked after the name, a name is always removed by a
// holder of the exclusive lock on the very object it names, and no mapper
// ever sits on a removed object. Sections abandoned by dead users are also
// removed by the sweep every Open runs.
//
// Downgrading from the exclusive to the shared lock never waits (nobody else
// holds a lock then), so no releaser can slip in between.
#include "platform/shared_memory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "crvlib/error.h"

namespace crvlib::platform {
namespace {

constexpr std::string_view kPrefix = "crvlib-";
constexpr char kSharedMemoryFolder[] = "/dev/shm";
// Opening again after losing a race with a releaser is rare; this bound only
// keeps a pathological race from spinning forever.
constexpr int kMaxAttempts = 1000;

[[noreturn]] void RaiseSystemError(int err) {
  char buffer[256];
  const char* text = ::strerror_r(err, buffer, sizeof buffer);
  throw Error(err, String(), String::FromUtf8(text));
}

bool Unlinked(int fd) {
  struct stat st;
  return ::fstat(fd, &st) != 0 || st.st_nlink == 0;
}

// Lets go of a section's descriptor, removing its name when nobody else has
// it locked. Converting the shared lock fails at once while another user
// holds one.
void Release(const std::string& name, int fd) {
  if (::flock(fd, LOCK_EX | LOCK_NB) == 0) ::shm_unlink(name.c_str());
  ::close(fd);
}

void AppendByte(std::string& out, uint8_t b) {
  if (b == '/' || b == '%' || b < 0x20 || b >= 0x7F) {
    constexpr char kHex[] = "0123456789ABCDEF";
    out.push_back('%');
    out.push_back(kHex[b >> 4]);
    out.push_back(kHex[b & 15]);
  } else {
    out.push_back(static_cast<char>(b));
  }
}

}  // namespace

std::string SharedMemory::SystemName(std::u16string_view name) {
  std::string out(1, '/');
  out += kPrefix;
  for (size_t i = 0; i < name.size(); ++i) {
    uint32_t cp = name[i];
    if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < name.size() && name[i + 1] >= 0xDC00 &&
        name[i + 1] < 0xE000) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (name[++i] - 0xDC00);
    }
    // A lone surrogate is encoded like any other code point, so that distinct
    // names stay distinct.
    if (cp < 0x80) {
      AppendByte(out, static_cast<uint8_t>(cp));
    } else if (cp < 0x800) {
      AppendByte(out, static_cast<uint8_t>(0xC0 | (cp >> 6)));
      AppendByte(out, static_cast<uint8_t>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      AppendByte(out, static_cast<uint8_t>(0xE0 | (cp >> 12)));
      AppendByte(out, static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3F)));
      AppendByte(out, static_cast<uint8_t>(0x80 | (cp & 0x3F)));
    } else {
      AppendByte(out, static_cast<uint8_t>(0xF0 | (cp >> 18)));
      AppendByte(out, static_cast<uint8_t>(0x80 | ((cp >> 12) & 0x3F)));
      AppendByte(out, static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3F)));
      AppendByte(out, static_cast<uint8_t>(0x80 | (cp & 0x3F)));
    }
  }
  return out;
}

void SharedMemory::SweepAbandoned() {
  DIR* folder = ::opendir(kSharedMemoryFolder);
  if (folder == nullptr) return;
  while (const dirent* entry = ::readdir(folder)) {
    std::string_view file = entry->d_name;
    if (file.substr(0, kPrefix.size()) != kPrefix) continue;
    std::string name = "/" + std::string(file);
    int fd = ::shm_open(name.c_str(), O_RDONLY | O_CLOEXEC, 0);
    if (fd < 0) continue;  // gone already, or another user's
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0 && !Unlinked(fd)) ::shm_unlink(name.c_str());
    ::close(fd);
  }
  ::closedir(folder);
}

SharedMemory::Opened SharedMemory::Open(std::u16string_view name, int64_t min_bytes) {
  std::string system_name = SystemName(name);
  SweepAbandoned();
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    int fd = ::shm_open(system_name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) RaiseSystemError(errno);

    bool existed;
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
      if (Unlinked(fd)) {
        ::close(fd);
        continue;
      }
      // Nobody maps it: begin with no content, whatever a dead user left.
      existed = false;
      if (::ftruncate(fd, 0) != 0) {
        int err = errno;
        Release(system_name, fd);
        RaiseSystemError(err);
      }
    } else {
      if (errno != EWOULDBLOCK) {
        int err = errno;
        ::close(fd);
        RaiseSystemError(err);
      }
      // In use, or being set up or removed: wait until it is settled.
      while (::flock(fd, LOCK_SH) != 0) {
        if (errno != EINTR) {
          int err = errno;
          ::close(fd);
          RaiseSystemError(err);
        }
      }
      if (Unlinked(fd)) {
        ::close(fd);
        continue;
      }
      existed = true;
    }

    // Growing commits the memory now; it never shrinks a section that
    // others may map in full.
    int err = min_bytes > 0 ? ::posix_fallocate(fd, 0, min_bytes) : 0;
    if (err == 0 && !existed && ::flock(fd, LOCK_SH) != 0) err = errno;
    struct stat st;
    if (err == 0 && ::fstat(fd, &st) != 0) err = errno;
    void* data = MAP_FAILED;
    if (err == 0) {
      if (st.st_size <= 0) st.st_size = 1;  // an empty section still maps a page
      data = ::mmap(nullptr, static_cast<size_t>(st.st_size), PROT_READ | PROT_WRITE, MAP_SHARED,
                    fd, 0);
      if (data == MAP_FAILED) err = errno;
    }
    if (err != 0) {
      Release(system_name, fd);
      RaiseSystemError(err);
    }
    return {std::unique_ptr<SharedMemory>(new SharedMemory(
                std::move(system_name), fd, static_cast<uint8_t*>(data), st.st_size)),
            existed};
  }
  RaiseSystemError(EAGAIN);
}

SharedMemory::~SharedMemory() {
  ::munmap(data_, static_cast<size_t>(size_));
  // A copy of this object in a forked child shares the parent's lock; it must
  // not touch it, only let go of its mapping and descriptor.
  if (::getpid() == owner_) {
    Release(name_, fd_);
  } else {
    ::close(fd_);
  }
}

bool SharedMemory::Reach(int64_t bytes) {
  if (bytes <= size_) return true;
  struct stat st;
  if (::fstat(fd_, &st) != 0 || st.st_size < bytes) return false;
  void* data =
      ::mmap(nullptr, static_cast<size_t>(st.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, fd_, 0);
  if (data == MAP_FAILED) return false;
  ::munmap(data_, static_cast<size_t>(size_));
  data_ = static_cast<uint8_t*>(data);
  size_ = st.st_size;
  return true;
}

}  // namespace crvlib::platform
