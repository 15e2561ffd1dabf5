// VarFormat: the Format language with a small per-thread cache of compiled
// formats, so a format used in a loop is parsed once. Compiling lives in
// format_compile.cpp, laying values out in format_render.cpp.
#include "runtime/format.h"

#include <array>
#include <memory>

#include "core/error_frame.h"
#include "core/thread_state.h"

namespace crvlib::internal {
namespace {

struct FormatCache {
  struct Entry {
    std::u16string key;
    std::shared_ptr<const CompiledFormat> format;
  };
  static constexpr size_t kSize = 16;
  std::array<Entry, kSize> entries;
  size_t next = 0;
};

std::shared_ptr<const CompiledFormat> Compile(std::u16string_view format,
                                              const LocaleSettings& loc) {
  auto f = std::make_shared<CompiledFormat>();
  if (CompileFormat(format, loc, f.get()) != FormatStatus::kOk) Raise(kInvalidProcedureCall);
  return f;
}

}  // namespace

String VarFormat(const Variant& value, std::u16string_view format, const LocaleSettings& locale) {
  ThreadState& state = State();
  if (&locale != &state.locale) return FormatCompiled(value, *Compile(format, locale), locale);
  FormatCache& cache = state.Slot<FormatCache>();
  for (const FormatCache::Entry& e : cache.entries) {
    if (e.format && e.key == format) return FormatCompiled(value, *e.format, locale);
  }
  FormatCache::Entry& slot = cache.entries[cache.next];
  cache.next = (cache.next + 1) % FormatCache::kSize;
  slot.format = Compile(format, locale);
  slot.key.assign(format);
  return FormatCompiled(value, *slot.format, locale);
}

String VarFormat(const Variant& value, std::u16string_view format) {
  return VarFormat(value, format, State().locale);
}

}  // namespace crvlib::internal
