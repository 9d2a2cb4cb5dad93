#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "filters/assembly.h"
#include "filters/import.h"
#include "filters/json_fields.h"

namespace tooldb {

/// A holder's shape, in the unit of the tools that use it.
struct FusionHolder {
  std::vector<ConeSection> sections;  ///< from the nose to the spindle
  double gauge_length = 0;            ///< from the nose to the gauge line
  LengthUnit unit = LengthUnit::kMillimetre;
};

/// Truncated cones of a "segments" list; nothing when it is none, or a number is missing.
std::optional<std::vector<ConeSection>> read_segments(const Json* segments, LengthUnit from,
                                                      LengthUnit to);
/// The unit that an entry or a holder names; nothing for anything but the two known names.
std::optional<LengthUnit> read_fusion_unit(JsonFields& fields);

/// The holders of one library: what is repeated becomes a component that its tools share.
class FusionHolders {
 public:
  /// Counts one use, by a tool whose lengths are in `unit`. One without an outline does not count.
  void Count(const Json& holder, LengthUnit unit);
  /// Counts a holder that stands in the library by itself: it becomes a component.
  void CountAlone(const Json& holder);

  /// Makes the components; to be called once, when all are counted. The entries of those that do
  /// not stand in the library by themselves.
  std::vector<ImportEntry> MakeComponents(const std::string& file_name);

  /// The entry of a holder that stands in the library by itself; a second one of the same shape
  /// gives an entry without a component.
  ImportEntry TakeAlone(const Json& holder, const std::string& source);

  /// The holder of a tool: the use of a component, or an item of its own.
  std::unique_ptr<tdbItem> ForTool(const Json& holder, LengthUnit unit) const;
  /// Its shape; null when it has none.
  const FusionHolder* Find(const Json& holder, LengthUnit unit) const;

 private:
  struct Pooled {
    FusionHolder shape;
    const Json* source = nullptr;
    int uses = 0;
    bool alone = false;
    /// Shared by the tools; the entry that reports it holds a copy.
    std::unique_ptr<tdbToolComponent> component;
    bool taken = false;
  };

  Pooled* Pool(const Json& holder, LengthUnit unit);
  std::string FreeCode(const Pooled& pooled);

  std::map<std::string, Pooled> pool_;
  std::vector<std::string> order_;  ///< keys of the pool, as the library has them
  std::set<std::string> codes_;     ///< lower case
};

}  // namespace tooldb
