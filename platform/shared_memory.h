// Named shared memory sections that live while any process maps them, as
// sections backed by the paging file do: a section disappears when its last
// user unmaps it, also when that user dies without cleaning up.
//
//   auto a = SharedMemory::Open(u"orders", 100);   // a.existed == false, zero-filled
//   auto b = SharedMemory::Open(u"orders", 100);   // b.existed == true, same bytes
//   a.memory.reset(); b.memory.reset();            // the section is gone
//
// Failed system calls raise an Error whose number is the errno value and
// whose description is the system's text for it.
#ifndef CRVLIB_PLATFORM_SHARED_MEMORY_H_
#define CRVLIB_PLATFORM_SHARED_MEMORY_H_

#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace crvlib::platform {

class SharedMemory {
 public:
  struct Opened {
    std::unique_ptr<SharedMemory> memory;
    // True when the section had a live user; otherwise it is new and every
    // byte of it is zero.
    bool existed = false;
  };

  // Maps the section `name`, creating it when no live section has that name,
  // and grows it to at least `min_bytes` (the memory is committed at once,
  // so a full system fails here rather than on a later write).
  static Opened Open(std::u16string_view name, int64_t min_bytes);

  // Unmaps, and removes the section when no other user maps it.
  ~SharedMemory();
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  uint8_t* data() const { return data_; }
  int64_t size() const { return size_; }

  // Makes at least `bytes` addressable, remapping when another user has grown
  // the section since it was mapped here. False when the section is smaller.
  bool Reach(int64_t bytes);

  // The system name of section `name`: "/crvlib-" followed by the name's
  // UTF-8 bytes, with "/", "%", control characters and every non-ASCII byte
  // written as %XX.
  //   SystemName(u"a/b") == "/crvlib-a%2Fb"    SystemName(u"é") == "/crvlib-%C3%A9"
  static std::string SystemName(std::u16string_view name);

  // Removes the sections of crvlib that no process maps any more (their last
  // user died). Open runs it; it is cheap when there is nothing to remove.
  static void SweepAbandoned();

 private:
  SharedMemory(std::string name, int fd, uint8_t* data, int64_t size)
      : name_(std::move(name)), owner_(::getpid()), fd_(fd), data_(data), size_(size) {}

  std::string name_;
  pid_t owner_;  // the process that took the lock
  int fd_;
  uint8_t* data_;
  int64_t size_;
};

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_SHARED_MEMORY_H_
