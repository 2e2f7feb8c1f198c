#pragma once
// TOV_UTILS_API: marks what libtov_utils exports; everything else stays hidden.

#if defined(TOV_UTILS_BUILD)
#define TOV_UTILS_API __attribute__((visibility("default")))
#else
#define TOV_UTILS_API
#endif
