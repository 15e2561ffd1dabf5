// The "scalar" scan kernel and the choice of the process's kernel. The
// environment is read once, when the first scan asks; a kernel is never
// switched under a running scan.
#include "dynstring/element_kernels.h"

#include <cstdlib>

namespace crvlib::internal {

#ifdef CRVLIB_SCAN_SSE2
extern const ScanKernel kSse2ScanKernel;  // element_kernel_sse2.cpp
#endif

namespace {

const ScanKernel kScalarScanKernel = {"scalar", scalar::Find, scalar::Count, scalar::Collect};

const ScanKernel& ChooseScanKernel() {
  const std::span<const ScanKernel* const> kernels = AvailableScanKernels();
  if (const char* wanted = std::getenv("CRVLIB_KERNEL")) {
    for (const ScanKernel* k : kernels) {
      if (k->name == wanted) return *k;
    }
  }
  return *kernels.front();
}

}  // namespace

std::span<const ScanKernel* const> AvailableScanKernels() {
  static const ScanKernel* const kKernels[] = {
#ifdef CRVLIB_SCAN_SSE2
      &kSse2ScanKernel,
#endif
      &kScalarScanKernel,
  };
  return kKernels;
}

const ScanKernel& ActiveScanKernel() {
  static const ScanKernel& kernel = ChooseScanKernel();
  return kernel;
}

}  // namespace crvlib::internal
