/// Tells by QUARRY_TEST_SANITIZED whether the address or thread sanitizer watches the tests: they
/// have an allocator of their own, which holds back what was freed, and take much longer.
#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QUARRY_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QUARRY_TEST_SANITIZED 1
#endif
#endif
