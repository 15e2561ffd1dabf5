#!/usr/bin/env bash
# Sets up, builds and runs crvlib on Debian 12.
#
#   scripts/dev.sh example    install what is missing, build, run crv on the bundled example
#   scripts/dev.sh test       install what is missing, build, run every test
#   scripts/dev.sh python     install what is missing, build the Python module, run its tests
#   scripts/dev.sh sanitize   the test suite again under AddressSanitizer + UBSan
#   scripts/dev.sh bench      build and run the benchmarks (Release)
#   scripts/dev.sh fuzz NAME [SECONDS]   run one libFuzzer target (clang)
set -euo pipefail
cd "$(dirname "$0")/.."

PACKAGES=(g++ cmake ninja-build pkg-config libicu-dev libpcre2-dev libgtest-dev
          libbenchmark-dev)
JOBS=$(nproc 2>/dev/null || echo 2)
# Debian's Python packages are for the system interpreter, whatever python3
# comes first on PATH.
PYTHON=/usr/bin/python3
PYTHON_PACKAGES=(python3-dev python3-pybind11 python3-pytest python3-pandas python3-dask
                 python3-distributed)

install_missing() {
  local missing=()
  for p in "${PACKAGES[@]}" "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get install -y --no-install-recommends "${missing[@]}" ||
    { $sudo apt-get update && $sudo apt-get install -y --no-install-recommends "${missing[@]}"; }
}

build() {  # build DIR [cmake options...]
  local dir=$1; shift
  # Warnings are errors in every build made here, as in CI.
  set -- -DCRVLIB_WERROR=ON "$@"
  # ccache, when installed, makes rebuilds of unchanged units free.
  command -v ccache >/dev/null && set -- -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@"
  # Configure quietly, but show everything when it fails.
  local log
  log=$(cmake -S . -B "$dir" -G Ninja "$@" 2>&1) || { printf '%s\n' "$log" >&2; return 1; }
  cmake --build "$dir" -j "$JOBS"
}

case "${1:-}" in
  example)
    install_missing
    build build
    build/crv batch < examples/orders.jsonl
    ;;
  test)
    install_missing "${PYTHON_PACKAGES[@]}"
    build build -DPython_EXECUTABLE="$PYTHON" -DCRVLIB_BUILD_PYTHON=ON
    ctest --test-dir build --output-on-failure -j "$JOBS"
    # The scan and element tests once more on each scan kernel by name, so the
    # plain loops are tested on their own and not only as the vector tails.
    for kernel in scalar sse2; do
      CRVLIB_KERNEL=$kernel ctest --test-dir build --output-on-failure -j "$JOBS" \
        -R '^(Element|FunctionsElements|DynamicString|Field)'
    done
    ;;
  python)
    install_missing "${PYTHON_PACKAGES[@]}"
    build build -DPython_EXECUTABLE="$PYTHON" -DCRVLIB_BUILD_PYTHON=ON
    PYTHONPATH=build/python "$PYTHON" -m pytest -q -p no:cacheprovider tests/python
    ;;
  sanitize)
    install_missing
    build build-asan -DCMAKE_BUILD_TYPE=Debug -DCRVLIB_SANITIZE=ON -DCRVLIB_BUILD_BENCHMARKS=OFF
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
      ctest --test-dir build-asan --output-on-failure -j "$JOBS"
    ;;
  bench)
    install_missing python3
    build build-release -DCMAKE_BUILD_TYPE=Release -DCRVLIB_BUILD_TESTS=OFF
    for b in build-release/bench/*_bench; do "$b"; done
    ;;
  fuzz)
    install_missing clang libclang-rt-dev
    build build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCRVLIB_BUILD_FUZZERS=ON \
      -DCRVLIB_BUILD_TESTS=OFF -DCRVLIB_BUILD_BENCHMARKS=OFF
    name=${2:?fuzz target name}
    mkdir -p "fuzz/corpus/$name"
    "build-fuzz/fuzz/$name" -max_total_time="${3:-60}" "fuzz/corpus/$name"
    ;;
  *)
    sed -n '2,10p' "$0"
    exit 2
    ;;
esac
