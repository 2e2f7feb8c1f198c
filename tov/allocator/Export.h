#pragma once
// TOV_ALLOCATOR_API: marks what libtov_allocator exports; everything else stays hidden.

#if defined(TOV_ALLOCATOR_BUILD)
#define TOV_ALLOCATOR_API __attribute__((visibility("default")))
#else
#define TOV_ALLOCATOR_API
#endif
