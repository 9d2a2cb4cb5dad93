#pragma once

#if defined(__SANITIZE_THREAD__)
#define TOOLDB_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TOOLDB_THREAD_SANITIZER
#endif
#endif

#ifdef TOOLDB_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

namespace tooldb {

/// Tells the thread sanitizer what it cannot see in the scheduler of tasks, into which it is not
/// built: what the caller did comes before its pieces, and what they did before the caller goes
/// on. Orders no piece before another; compiles to nothing without that sanitizer.
class TaskOrder {
#ifdef TOOLDB_THREAD_SANITIZER
 public:
  struct Call {
    Call() { __tsan_release(&given_); }
    ~Call() { __tsan_acquire(&done_); }
  };
  struct Piece {
    Piece() { __tsan_acquire(&given_); }
    ~Piece() { __tsan_release(&done_); }
  };

 private:
  inline static char given_ = 0;
  inline static char done_ = 0;
#else
 public:
  struct [[maybe_unused]] Call {};
  struct [[maybe_unused]] Piece {};
#endif
};

}  // namespace tooldb
