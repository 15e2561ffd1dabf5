// The Conversions class: conversion codes, typed input and output conversions,
// character filters and proper case.
#include "cli/surface.h"
#include "crvlib/conversions.h"

namespace crvlib::cli {

ClassInfo ConversionsClass() {
  return GlobalClass("Conversions", "Conversion codes, typed conversions and character filters.",
                     {});
}

}  // namespace crvlib::cli
