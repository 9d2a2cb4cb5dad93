#pragma once

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_invoke.h>

#include <cstddef>
#include <utility>

#include "geom/task_order.h"

/// @file
/// Loops spread over the cores. The pieces of a loop depend on its length and grain alone, never
/// on the number of threads, so that a result is the same bit for bit on one core and on many. A
/// call returns when every piece is done; an exception of a piece reaches the caller.

namespace tooldb {

/// Keeps the threads as long as the process lives. They would end whenever the last thread does
/// that has called a loop; on Windows the two could wait for one another, one holding the lock of
/// the loader and one that of the thread library.
inline void keep_threads() {
  [[maybe_unused]] static const auto* const kKept =
      new tbb::task_scheduler_handle(tbb::attach{});  // given back to nobody
}

/// Calls `body(begin, end)` for pieces of [0, count) of at most `grain` indices, in no order; on
/// the caller's thread alone when there is only one piece.
template <class Body>
void parallel_for(std::size_t count, std::size_t grain, const Body& body) {
  if (count == 0) return;
  if (count <= grain) {
    body(std::size_t{0}, count);
    return;
  }
  keep_threads();
  const TaskOrder::Call call;
  tbb::parallel_for(std::size_t{0}, (count + grain - 1) / grain, [&](std::size_t piece) {
    const TaskOrder::Piece order;
    const std::size_t begin = piece * grain;
    body(begin, count - begin < grain ? count : begin + grain);
  });
}

/// What a deterministic reduction computes: `leaf(begin, end)` for pieces of at most `grain`
/// indices, joined in order by `join(left, right)` along a binary tree.
template <class Leaf, class Join>
struct Reduction {
  std::size_t grain;
  Leaf leaf;
  Join join;

  auto operator()(std::size_t begin, std::size_t end) const {
    using Result = decltype(leaf(begin, end));
    if (end - begin <= grain) return leaf(begin, end);
    const std::size_t middle = begin + (end - begin) / 2;
    Result left;
    Result right;
    keep_threads();
    {
      const TaskOrder::Call call;
      tbb::parallel_invoke(
          [&] {
            const TaskOrder::Piece order;
            left = (*this)(begin, middle);
          },
          [&] {
            const TaskOrder::Piece order;
            right = (*this)(middle, end);
          });
    }
    return join(std::move(left), std::move(right));
  }
};
template <class Leaf, class Join>
Reduction(std::size_t, Leaf, Join) -> Reduction<Leaf, Join>;

}  // namespace tooldb
