// platform::RegExp on PCRE2 (16-bit code units, no UTF mode, JIT when the
// library has it).
//
// PCRE2 speaks a Perl dialect; the patterns callers write are VBScript's.
// Each pattern is first rewritten into an explicit PCRE2 form
// (regex_to_pcre2.h), then compiled with the options that give the dialect's
// meaning: no UTF (a lone surrogate is an ordinary unit), an unset or not yet
// closed group matching the empty string in a back-reference, and ^ and $
// about the whole subject. Caseless patterns are compiled with PCRE2_UCP so
// that their back-references fold by Unicode's rules.
//
// What still differs from the scripting runtime: captures inside a repeated
// group are not reset at each repetition, so a back-reference to such a group
// can see an earlier iteration's text; a caseless back-reference folds the
// few characters PCRE2 folds beyond simple upper-casing (the Kelvin sign with
// "k", for one); quantifier counts above 65535, more than 250 nested groups
// and patterns whose compiled form outgrows PCRE2's size limit are syntax
// errors here; and a match that exceeds the step or memory limits below gives
// up with kOutOfStackSpace where the scripting runtime would keep going.
//
// Compiled patterns are cached per thread (keyed by pattern text and
// IgnoreCase, 64 entries, clock eviction), because the common use is one
// pattern tested against many values. A cache hit on JIT-compiled code
// allocates nothing: the match data, match context and JIT stack belong to
// the thread. (Caseless patterns with back-references run on the
// interpreter, because PCRE2's JIT does not fold those above ASCII.)
#include "platform/regex.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "crvlib/error.h"
#include "platform/regex_to_pcre2.h"

namespace crvlib::platform {
namespace {

// Limits that keep a hostile pattern or subject within bounded time and
// memory. The step limit ends a catastrophic backtrack in well under a
// second; the heap limit bounds the interpreter's backtracking frames.
constexpr uint32_t kMatchLimit = 5'000'000;
constexpr uint32_t kHeapLimitKiB = 64 * 1024;
constexpr PCRE2_SIZE kJitStackStart = 32 * 1024;
constexpr PCRE2_SIZE kJitStackMax = 8 * 1024 * 1024;

[[noreturn]] void RaiseEngineError(int32_t number, std::u16string_view description) {
  throw Error(number, String(), String(description));
}

[[noreturn]] void RaiseSyntaxError() {
  RaiseEngineError(kRegExpSyntaxError, u"Syntax error in regular expression");
}

// --- Compiled patterns --------------------------------------------------

struct CodeFree {
  void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
using CodePtr = std::unique_ptr<pcre2_code, CodeFree>;

// A compiled pattern; a null code stands for a pattern that does not compile.
struct Compiled {
  CodePtr code;
  bool jit = false;  // JIT-compiled: matched through pcre2_jit_match
};

// Equality by memcmp: char_traits<char16_t> compares unit by unit, which on
// the cache's hot path costs as much as a short match.
bool SameUnits(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0;
}

uint64_t HashUnits(std::u16string_view s) {
  uint64_t h = 0xcbf29ce484222325ull;  // FNV-1a
  for (char16_t c : s) {
    h ^= c;
    h *= 0x100000001b3ull;
  }
  return h;
}

// Compiled patterns by (pattern, IgnoreCase). Invalid patterns are kept too,
// so a bad pattern in a loop is not parsed again.
class PatternCache {
 public:
  static constexpr size_t kCapacity = 64;
  // Longer patterns, and patterns whose compiled and JIT code together pass
  // kMaxCachedBytes, are compiled for their one call only.
  static constexpr size_t kMaxCachedPatternUnits = 4096;
  static constexpr size_t kMaxCachedBytes = 256 * 1024;

  struct Entry {
    std::u16string pattern;
    uint64_t hash = 0;
    bool ignore_case = false;
    bool referenced = false;
    Compiled compiled;
  };

  Entry* Find(std::u16string_view pattern, bool ignore_case) {
    // The pattern of the previous call, found without hashing.
    if (last_ < entries_.size()) {
      Entry& e = entries_[last_];
      if (e.ignore_case == ignore_case && SameUnits(e.pattern, pattern)) {
        e.referenced = true;
        return &e;
      }
    }
    uint64_t hash = HashUnits(pattern);
    for (size_t i = 0; i < entries_.size(); ++i) {
      Entry& e = entries_[i];
      if (e.hash == hash && e.ignore_case == ignore_case && SameUnits(e.pattern, pattern)) {
        e.referenced = true;
        last_ = i;
        return &e;
      }
    }
    return nullptr;
  }

  // Takes `compiled` and returns the new entry; evicts by the clock when full.
  Entry& Insert(std::u16string_view pattern, bool ignore_case, Compiled compiled) {
    size_t slot;
    if (entries_.size() < kCapacity) {
      entries_.emplace_back();
      slot = entries_.size() - 1;
    } else {
      while (entries_[hand_].referenced) {
        entries_[hand_].referenced = false;
        hand_ = (hand_ + 1) % kCapacity;
      }
      slot = hand_;
      hand_ = (hand_ + 1) % kCapacity;
    }
    Entry& e = entries_[slot];
    e.pattern.assign(pattern);
    e.hash = HashUnits(pattern);
    e.ignore_case = ignore_case;
    e.referenced = false;
    e.compiled = std::move(compiled);
    last_ = slot;
    return e;
  }

  size_t size() const { return entries_.size(); }

 private:
  std::vector<Entry> entries_;
  size_t hand_ = 0;
  size_t last_ = SIZE_MAX;
};

}  // namespace

// The thread's engine: PCRE2 contexts, match data, JIT stack and the cache.
struct RegExp::Engine {
  Engine() {
    compile_context = pcre2_compile_context_create(nullptr);
    match_context = pcre2_match_context_create(nullptr);
    match_data = pcre2_match_data_create(1, nullptr);
    uint32_t has_jit = 0;
    pcre2_config(PCRE2_CONFIG_JIT, &has_jit);
    if (has_jit != 0) jit_stack = pcre2_jit_stack_create(kJitStackStart, kJitStackMax, nullptr);
    if (compile_context == nullptr || match_context == nullptr || match_data == nullptr ||
        (has_jit != 0 && jit_stack == nullptr)) {
      Free();
      throw std::bad_alloc();
    }
    pcre2_set_max_pattern_length(compile_context, kMaxTranslatedUnits);
    pcre2_set_match_limit(match_context, kMatchLimit);
    pcre2_set_heap_limit(match_context, kHeapLimitKiB);
    if (jit_stack != nullptr) pcre2_jit_stack_assign(match_context, nullptr, jit_stack);
  }
  ~Engine() { Free(); }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  void Free() {
    pcre2_compile_context_free(compile_context);
    pcre2_match_context_free(match_context);
    pcre2_match_data_free(match_data);
    pcre2_jit_stack_free(jit_stack);
  }

  // Translates and compiles `pattern`.
  Compiled Compile(std::u16string_view pattern, bool ignore_case) {
    if (ignore_case && !cases) cases = std::make_unique<CaseClasses>();
    bool back_references = false;
    Compiled compiled;
    if (TranslateToPcre2(pattern, ignore_case ? cases.get() : nullptr, &translated,
                         &back_references)) {
      uint32_t options = PCRE2_MATCH_UNSET_BACKREF | PCRE2_NEVER_UTF | PCRE2_NEVER_BACKSLASH_C |
                         (ignore_case ? PCRE2_UCP : PCRE2_NEVER_UCP);
      int error = 0;
      PCRE2_SIZE offset = 0;
      compiled.code.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(translated.data()),
                                        translated.size(), options, &error, &offset,
                                        compile_context));
      if (!compiled.code && error == PCRE2_ERROR_NOMEMORY) throw std::bad_alloc();
      // Without JIT (unsupported, or no memory for it) the interpreter runs.
      // PCRE2's JIT compares caseless back-references above ASCII exactly
      // where its interpreter folds them, so those patterns stay interpreted.
      if (compiled.code && !(ignore_case && back_references)) {
        compiled.jit = pcre2_jit_compile(compiled.code.get(), PCRE2_JIT_COMPLETE) == 0;
      }
    }
    if (translated.capacity() > 64 * 1024) std::u16string().swap(translated);
    return compiled;
  }

  static bool Cacheable(std::u16string_view pattern, const Compiled& compiled) {
    if (pattern.size() > PatternCache::kMaxCachedPatternUnits) return false;
    const pcre2_code* code = compiled.code.get();
    if (code == nullptr) return true;
    size_t size = 0;
    size_t jit_size = 0;
    pcre2_pattern_info(code, PCRE2_INFO_SIZE, &size);
    pcre2_pattern_info(code, PCRE2_INFO_JITSIZE, &jit_size);
    return size + jit_size <= PatternCache::kMaxCachedBytes;
  }

  // Raises kRegExpSyntaxError for an invalid pattern.
  bool Match(const Compiled& compiled, std::u16string_view subject) {
    const pcre2_code* code = compiled.code.get();
    if (code == nullptr) RaiseSyntaxError();
    static constexpr char16_t kEmpty[] = u"";
    PCRE2_SPTR data = reinterpret_cast<PCRE2_SPTR>(subject.empty() ? kEmpty : subject.data());
    // pcre2_jit_match skips pcre2_match's checks, which cost as much as a
    // short match does.
    int rc = compiled.jit
                 ? pcre2_jit_match(code, data, subject.size(), 0, 0, match_data, match_context)
                 : pcre2_match(code, data, subject.size(), 0, 0, match_data, match_context);
    // The JIT stack is small; the interpreter keeps its frames on the heap
    // and may get further before its own limits.
    if (rc == PCRE2_ERROR_JIT_STACKLIMIT) {
      rc = pcre2_match(code, data, subject.size(), 0, PCRE2_NO_JIT, match_data, match_context);
    }
    if (rc >= 0) return true;  // 0: a match with more groups than the match data holds
    if (rc == PCRE2_ERROR_NOMATCH) return false;
    if (rc == PCRE2_ERROR_NOMEMORY) internal::Raise(internal::kOutOfMemory);
    RaiseEngineError(kOutOfStackSpace, u"Out of stack space");
  }

  pcre2_compile_context* compile_context = nullptr;
  pcre2_match_context* match_context = nullptr;
  pcre2_match_data* match_data = nullptr;
  pcre2_jit_stack* jit_stack = nullptr;
  PatternCache cache;
  std::unique_ptr<CaseClasses> cases;
  std::u16string translated;
  int32_t failure_for_testing = 0;
};

RegExp::RegExp() : engine_(&internal::State().Slot<Engine>()) {
  if (engine_->failure_for_testing != 0) internal::Raise(engine_->failure_for_testing);
}

RegExp::~RegExp() = default;

bool RegExp::Test(std::u16string_view subject) {
  Engine& engine = *engine_;
  if (PatternCache::Entry* hit = engine.cache.Find(pattern_, ignore_case_)) {
    return engine.Match(hit->compiled, subject);
  }
  Compiled compiled = engine.Compile(pattern_, ignore_case_);
  if (!Engine::Cacheable(pattern_, compiled)) return engine.Match(compiled, subject);
  return engine.Match(engine.cache.Insert(pattern_, ignore_case_, std::move(compiled)).compiled,
                      subject);
}

void FailRegExpCreationForTesting(int32_t error_number) {
  internal::State().Slot<RegExp::Engine>().failure_for_testing = error_number;
}

size_t CachedRegExpCountForTesting() {
  return internal::State().Slot<RegExp::Engine>().cache.size();
}

}  // namespace crvlib::platform
