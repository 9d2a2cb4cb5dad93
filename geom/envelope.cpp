#include "geom/envelope.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace tooldb {
namespace {

constexpr std::size_t kMostBuckets = 4096;
// Where nothing is known to be: below every radius.
constexpr double kNothing = -std::numeric_limits<double>::infinity();

// What of an envelope a merge has still to look at.
struct Rest {
  std::span<const EnvelopePiece> pieces;
  std::size_t index = 0;
  double from = 0;

  explicit Rest(std::span<const EnvelopePiece> all) : pieces(all) { Start(); }

  bool Done() const { return index == pieces.size(); }
  const EnvelopePiece& Piece() const { return pieces[index]; }
  void Start() {
    if (!Done()) from = Piece().z0;
  }
  void AdvanceTo(double z) {
    from = z;
    if (z < Piece().z1) return;
    ++index;
    Start();
  }
};

class Merge {
 public:
  Merge(std::span<const EnvelopePiece> a, std::span<const EnvelopePiece> b, double same,
        Envelope& out)
      : a_(a), b_(b), same_(same), out_(out) {}

  void Run() {
    while (!a_.Done() && !b_.Done()) {
      if (a_.from < b_.from) {
        TakeUpTo(a_, b_.from);
      } else if (b_.from < a_.from) {
        TakeUpTo(b_, a_.from);
      } else {
        TakeHigher();
      }
    }
    while (!a_.Done()) TakeUpTo(a_, a_.Piece().z1);
    while (!b_.Done()) TakeUpTo(b_, b_.Piece().z1);
  }

 private:
  void TakeUpTo(Rest& rest, double z) {
    const double end = std::min(rest.Piece().z1, z);
    Emit(rest, rest.from, end);
    rest.AdvanceTo(end);
  }

  // Both have a piece here.
  void TakeHigher() {
    const EnvelopePiece& a = a_.Piece();
    const EnvelopePiece& b = b_.Piece();
    const double z = a_.from;
    const double end = std::min(a.z1, b.z1);
    const double more = b.At(z) - a.At(z);
    const double more_at_end = b.At(end) - a.At(end);
    if (more <= same_ && more_at_end <= same_) {
      Emit(a_, z, end);
    } else if (more >= -same_ && more_at_end >= -same_) {
      Emit(b_, z, end);
    } else {
      const double meet = z + (end - z) * (more / (more - more_at_end));
      Emit(more > 0 ? b_ : a_, z, meet);
      Emit(more > 0 ? a_ : b_, meet, end);
    }
    a_.AdvanceTo(end);
    b_.AdvanceTo(end);
  }

  void Emit(const Rest& rest, double z0, double z1) {
    if (!(z0 < z1)) return;
    const EnvelopePiece& piece = rest.Piece();
    if (last_ == &piece && out_.back().z1 == z0) {
      out_.back().z1 = z1;
      out_.back().r1 = piece.At(z1);
      return;
    }
    out_.push_back({z0, piece.At(z0), z1, piece.At(z1)});
    last_ = &piece;
  }

  Rest a_;
  Rest b_;
  double same_;
  Envelope& out_;
  const EnvelopePiece* last_ = nullptr;  // that the last piece of the result was cut from
};

EnvelopePiece part_of(const EnvelopePiece& piece, double z0, double z1) {
  return {z0, piece.At(z0), z1, piece.At(z1)};
}

}  // namespace

void merge_envelopes(std::span<const EnvelopePiece> a, std::span<const EnvelopePiece> b,
                     double same, Envelope& out) {
  Merge(a, b, same, out).Run();
}

Envelope EnvelopeBuilder::Take() {
  while (ends_.size() > 1) MergePairs();
  ends_.clear();
  return std::exchange(pieces_, {});
}

void EnvelopeBuilder::MergePairs() {
  merged_.clear();
  merged_ends_.clear();
  const std::span<const EnvelopePiece> all(pieces_);
  std::size_t begin = 0;
  for (std::size_t i = 0; i < ends_.size(); i += 2) {
    const std::size_t middle = ends_[i];
    const std::size_t end = i + 1 < ends_.size() ? ends_[i + 1] : middle;
    merge_envelopes(all.subspan(begin, middle - begin), all.subspan(middle, end - middle), same_,
                    merged_);
    merged_ends_.push_back(merged_.size());
    begin = end;
  }
  std::swap(pieces_, merged_);
  std::swap(ends_, merged_ends_);
}

EnvelopeIndex::EnvelopeIndex(Envelope envelope, double same)
    : envelope_(std::move(envelope)), same_(same) {
  if (envelope_.empty()) return;
  low_ = envelope_.front().z0;
  const std::size_t buckets = std::min(kMostBuckets, std::bit_ceil(2 * envelope_.size()));
  per_z_ = static_cast<double>(buckets) / (envelope_.back().z1 - low_);
  first_piece_.resize(buckets);
  minima_.assign(1, std::vector<double>(buckets, kNothing));
  FillBuckets();
  FillMinima();
}

std::size_t EnvelopeIndex::Bucket(double z) const {
  const double bucket = (z - low_) * per_z_;
  return bucket > 0 ? std::min(static_cast<std::size_t>(bucket), first_piece_.size() - 1) : 0;
}

void EnvelopeIndex::FillBuckets() {
  std::vector<double>& lowest = minima_.front();
  std::ranges::fill(lowest, std::numeric_limits<double>::infinity());
  std::size_t bucket = 0;
  for (std::size_t i = 0; i < envelope_.size(); ++i) {
    const EnvelopePiece& piece = envelope_[i];
    const std::size_t last = Bucket(piece.z1);
    for (; bucket <= last; ++bucket) first_piece_[bucket] = i;
    const bool gap = i > 0 && envelope_[i - 1].z1 < piece.z0;
    const double low = std::min(piece.r0, piece.r1);
    for (std::size_t k = Bucket(piece.z0); k <= last; ++k) lowest[k] = std::min(lowest[k], low);
    if (!gap) continue;
    for (std::size_t k = Bucket(envelope_[i - 1].z1); k <= Bucket(piece.z0); ++k) {
      lowest[k] = kNothing;
    }
  }
}

void EnvelopeIndex::FillMinima() {
  for (std::size_t width = 2; width <= first_piece_.size(); width *= 2) {
    const std::vector<double>& half = minima_.back();
    std::vector<double> minima(first_piece_.size() - width + 1);
    for (std::size_t k = 0; k < minima.size(); ++k) {
      minima[k] = std::min(half[k], half[k + width / 2]);
    }
    minima_.push_back(std::move(minima));
  }
}

double EnvelopeIndex::Lowest(std::size_t first, std::size_t last) const {
  const auto level = static_cast<std::size_t>(std::bit_width(last - first + 1) - 1);
  const std::vector<double>& minima = minima_[level];
  return std::min(minima[first], minima[last + 1 - (std::size_t{1} << level)]);
}

bool EnvelopeIndex::Hides(const EnvelopePiece& piece) const {
  if (envelope_.empty() || piece.z0 < low_ || piece.z1 > envelope_.back().z1) return false;
  int steps = 64;
  return HidesPart(piece, steps);
}

// Halves the piece where the minimum over its buckets does not decide; as deep as there are powers
// of two of buckets.
bool EnvelopeIndex::HidesPart(const EnvelopePiece& part, int& steps) const {
  const std::size_t first = Bucket(part.z0);
  const std::size_t last = Bucket(part.z1);
  if (std::max(part.r0, part.r1) <= Lowest(first, last) + same_) return true;
  if (last - first <= 1) return HidesInBuckets(part, first);
  if (--steps < 0) return false;
  const std::size_t half = first + (last - first + 1) / 2;
  const double middle = low_ + static_cast<double>(half) / per_z_;
  if (!(part.z0 < middle && middle < part.z1)) return false;
  return HidesPart(part_of(part, part.z0, middle), steps) &&
         HidesPart(part_of(part, middle, part.z1), steps);
}

bool EnvelopeIndex::HidesInBuckets(const EnvelopePiece& part, std::size_t first) const {
  double reached = part.z0;
  const std::size_t begin = first_piece_[first];
  const std::size_t end = std::min(envelope_.size(), begin + 24);
  for (std::size_t i = begin; i < end && reached < part.z1; ++i) {
    const EnvelopePiece& piece = envelope_[i];
    if (piece.z1 <= reached) continue;
    if (piece.z0 > reached) return false;
    const double z = std::min(piece.z1, part.z1);
    if (part.At(reached) > piece.At(reached) + same_ || part.At(z) > piece.At(z) + same_) {
      return false;
    }
    reached = z;
  }
  return reached >= part.z1;
}

}  // namespace tooldb
