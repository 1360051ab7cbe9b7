// Status and boolean values of the platform layer, used at every interface of the
// library. IBOOLEAN is a 32-bit integer so that it can be passed by pointer through
// the reflective interface; any non-zero value is true, but text forms treat only 1
// as "true".
#pragma once

#include <cstdint>

typedef std::int32_t IBOOLEAN;
constexpr IBOOLEAN IFALSE = 0;
constexpr IBOOLEAN ITRUE = 1;

enum ISTATUS : int { ISTATUS_SUCCESS = 0, ISTATUS_FAILURE = -1 };
