#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// @file
/// Upper envelopes of straight pieces over a line.

namespace tooldb {

/// A straight piece over [z0, z1], z0 < z1, of height r0 at z0 and r1 at z1.
struct EnvelopePiece {
  double z0, r0, z1, r1;

  double At(double z) const { return z == z1 ? r1 : r0 + (r1 - r0) * ((z - z0) / (z1 - z0)); }
};

/// Pieces in order of z that do not overlap; there may be gaps.
using Envelope = std::vector<EnvelopePiece>;

/// Appends the upper envelope of `a` and `b`. Where the two differ by at most `same`, either may
/// stand for both, so that noise does not cut pieces up.
void merge_envelopes(std::span<const EnvelopePiece> a, std::span<const EnvelopePiece> b,
                     double same, Envelope& out);

/// Builds the upper envelope of many runs of pieces by merging them two by two. One builder does
/// for many envelopes and keeps its memory.
class EnvelopeBuilder {
 public:
  explicit EnvelopeBuilder(double same) : same_(same) {}

  /// Adds a piece to the present run; it begins where the piece before it ends or later.
  void Add(const EnvelopePiece& piece) { pieces_.push_back(piece); }
  void EndRun() { ends_.push_back(pieces_.size()); }

  /// The envelope of all runs so far; the builder is empty then.
  Envelope Take();

 private:
  void MergePairs();

  double same_;
  Envelope pieces_;
  std::vector<std::size_t> ends_;
  Envelope merged_;
  std::vector<std::size_t> merged_ends_;
};

/// An envelope that tells quickly which pieces lie wholly below it.
class EnvelopeIndex {
 public:
  explicit EnvelopeIndex(Envelope envelope, double same);

  /// Whether `piece` exceeds the envelope nowhere by more than `same`. It may also answer false
  /// when finding out would take long.
  bool Hides(const EnvelopePiece& piece) const;

  const Envelope& Pieces() const { return envelope_; }

 private:
  std::size_t Bucket(double z) const;
  void FillBuckets();
  void FillMinima();
  double Lowest(std::size_t first, std::size_t last) const;
  bool HidesPart(const EnvelopePiece& part, int& steps) const;
  bool HidesInBuckets(const EnvelopePiece& part, std::size_t first) const;

  Envelope envelope_;
  double same_;
  double low_ = 0;
  double per_z_ = 0;
  std::vector<std::size_t> first_piece_;     // by bucket: the first piece that ends in it or later
  std::vector<std::vector<double>> minima_;  // by power of two of the number of buckets
};

}  // namespace tooldb
