#include "geom/silhouette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "geom/envelope.h"
#include "geom/parallel.h"
#include "geom/polyline.h"

namespace tooldb {
namespace {

constexpr double kDefaultTolerance = 1e-3;
constexpr double kFinest = 1e-6;    // of the mesh's size
constexpr double kNoHeight = 1e-9;  // edges lower than this are level
constexpr double kSamePart = 1e-3;  // of the tolerance: noise that makes no piece of its own
constexpr double kHiddenBy = 0.02;  // of the tolerance: an edge this much higher still hides
constexpr double kLargest = 1e100;  // squares stay finite
constexpr std::size_t kFacetsPerLeaf = 512;
constexpr std::size_t kStageFactor = 16;
constexpr std::size_t kFewFacets = 64;

struct Corner {
  Vec3 at;
  double radius;
};

// The distance from the axis along an edge, at the part s of its length: sqrt(a s^2 + 2 b s + c).
struct Branch {
  double a, b, c;
  double z0, height;

  double At(double s) const { return std::sqrt(std::max(0.0, (a * s + 2 * b) * s + c)); }
  double Height(double s) const { return z0 + s * height; }

  // Where the chord over [s0, s1], of `slope`, is farthest above the branch: there the branch has
  // the same slope.
  double Farthest(double s0, double s1, double slope) const {
    const double lowest = -b / a;
    const double rest = a - slope * slope;
    const double offset = std::sqrt(std::max(0.0, c - b * b / a));
    const double s = rest > 0 ? lowest + slope * offset / std::sqrt(a * rest) : lowest;
    return s0 < s && s < s1 ? s : 0.5 * (s0 + s1);
  }
};

// Turns the edges of facets into chords for an envelope.
class EdgeChords {
 public:
  EdgeChords(double tolerance, const EnvelopeIndex& known, EnvelopeBuilder& builder)
      : gap_(tolerance / 2), known_(known), builder_(builder) {}

  void AddFacet(const Facet& facet) {
    const std::array corners{ToCorner(facet.a), ToCorner(facet.b), ToCorner(facet.c)};
    // A NaN or an infinity makes the sum fail the comparison.
    double size = 0;
    for (const Corner& c : corners) size += c.radius + std::abs(c.at.z);
    if (!(size < kLargest)) return;
    AddEdge(corners[0], corners[1]);
    AddEdge(corners[1], corners[2]);
    AddEdge(corners[2], corners[0]);
  }

 private:
  static Corner ToCorner(const Vec3& p) { return {p, std::sqrt(p.x * p.x + p.y * p.y)}; }

  void AddEdge(const Corner& p, const Corner& q) {
    const auto& [low, high] = p.at.z < q.at.z ? std::pair(p, q) : std::pair(q, p);
    const double height = high.at.z - low.at.z;
    if (height < kNoHeight) return;
    const EnvelopePiece chord{low.at.z, low.radius, high.at.z, high.radius};
    if (known_.Hides(chord)) return;
    const double dx = high.at.x - low.at.x;
    const double dy = high.at.y - low.at.y;
    const double a = dx * dx + dy * dy;
    if (IsStraight(a, std::min(low.radius, high.radius))) {
      builder_.Add(chord);
    } else {
      const double b = low.at.x * dx + low.at.y * dy;
      AddBranch({a, b, low.radius * low.radius, low.at.z, height}, chord);
    }
    builder_.EndRun();
  }

  // The chord is at most a / (8 r) above a branch that comes no nearer to the axis than r.
  bool IsStraight(double a, double radius) const {
    return a <= 3 * gap_ * radius && 16 * a <= radius * radius;
  }

  void AddBranch(const Branch& branch, const EnvelopePiece& whole) {
    struct Part {
      double s0, r0, s1, r1;
    };
    std::vector<Part> open = {{0, whole.r0, 1, whole.r1}};
    double reached = whole.z0;
    while (!open.empty()) {
      const Part part = open.back();
      open.pop_back();
      const double slope = (part.r1 - part.r0) / (part.s1 - part.s0);
      const double s = branch.Farthest(part.s0, part.s1, slope);
      const double r = branch.At(s);
      if (part.r0 + slope * (s - part.s0) - r > gap_) {
        open.push_back({s, r, part.s1, part.r1});
        open.push_back({part.s0, part.r0, s, r});
        continue;
      }
      const double z1 = part.s1 == 1 ? whole.z1 : branch.Height(part.s1);
      if (z1 > reached) builder_.Add({reached, part.r0, z1, part.r1});
      reached = z1;
    }
  }

  double gap_;
  const EnvelopeIndex& known_;
  EnvelopeBuilder& builder_;
};

double size_of(const Facet& facet) {
  double size = 0;
  for (const Vec3* p : {&facet.a, &facet.b, &facet.c}) {
    const double largest = std::max({std::abs(p->x), std::abs(p->y), std::abs(p->z)});
    if (largest < kLargest) size = std::max(size, largest);
  }
  return size;
}

double size_of(std::span<const Facet> mesh) {
  const Reduction reduction{kFacetsPerLeaf,
                            [&](std::size_t begin, std::size_t end) {
                              double size = 0;
                              for (std::size_t i = begin; i < end; ++i) {
                                size = std::max(size, size_of(mesh[i]));
                              }
                              return size;
                            },
                            [](double left, double right) { return std::max(left, right); }};
  return reduction(0, mesh.size());
}

// The envelope of every `step`-th facet.
Envelope envelope_of(std::span<const Facet> mesh, std::size_t step, double tolerance,
                     const EnvelopeIndex& known) {
  const double same = kSamePart * tolerance;
  const Reduction reduction{kFacetsPerLeaf,
                            [&](std::size_t begin, std::size_t end) {
                              EnvelopeBuilder builder(same);
                              EdgeChords chords(tolerance, known, builder);
                              for (std::size_t i = begin; i < end; ++i)
                                chords.AddFacet(mesh[i * step]);
                              return builder.Take();
                            },
                            [&](const Envelope& left, const Envelope& right) {
                              Envelope merged;
                              merge_envelopes(left, right, same, merged);
                              return merged;
                            }};
  return reduction(0, (mesh.size() + step - 1) / step);
}

// Most edges of a large mesh lie below the envelope of a few, so it is made of ever more facets,
// those that the present one hides left out.
Envelope envelope_of(std::span<const Facet> mesh, double tolerance) {
  std::size_t step = 1;
  while (mesh.size() / step > kStageFactor * kFewFacets) step *= kStageFactor;
  Envelope envelope;
  for (; step > 0; step /= kStageFactor) {
    const EnvelopeIndex known(std::move(envelope), kHiddenBy * tolerance);
    const Envelope more = envelope_of(mesh, step, tolerance, known);
    envelope.clear();
    merge_envelopes(known.Pieces(), more, kSamePart * tolerance, envelope);
  }
  return envelope;
}

Polyline outline_of(const Envelope& envelope) {
  Polyline points;
  const auto add = [&](Vec2 p) {
    if (points.empty() || points.back() != p) points.push_back(p);
  };
  add({0, envelope.front().z0});
  double reached = envelope.front().z0;
  for (const EnvelopePiece& piece : envelope) {
    if (piece.z0 - reached > 10 * kNoHeight) {
      add({0, reached});
      add({0, piece.z0});
    }
    add({piece.r0, piece.z0});
    add({piece.r1, piece.z1});
    reached = piece.z1;
  }
  add({0, reached});
  return points;
}

}  // namespace

Polyline silhouette(std::span<const Facet> mesh, double tolerance) {
  if (mesh.empty()) return {};
  if (!(tolerance > 0)) tolerance = kDefaultTolerance;
  tolerance = std::max(tolerance, kFinest * size_of(mesh));
  const Envelope envelope = envelope_of(mesh, tolerance);
  if (envelope.empty()) return {};
  return thin_out(outline_of(envelope), tolerance / 4);
}

}  // namespace tooldb
