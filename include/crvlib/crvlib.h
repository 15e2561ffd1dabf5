// crvlib, the Corvane Tessel 2005 Global Procedure Library: string routines
// built around the dynamic string array of multi-value databases.
#ifndef CRVLIB_CRVLIB_H_
#define CRVLIB_CRVLIB_H_

#include "crvlib/constants.h"
#include "crvlib/conversions.h"
#include "crvlib/dll_routines.h"
#include "crvlib/dynamic_string.h"
#include "crvlib/enums.h"
#include "crvlib/error.h"
#include "crvlib/export.h"
#include "crvlib/functions.h"
#include "crvlib/locale.h"
#include "crvlib/shared_string.h"
#include "crvlib/string.h"
#include "crvlib/validations.h"
#include "crvlib/variant.h"

#endif  // CRVLIB_CRVLIB_H_
