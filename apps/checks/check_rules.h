#pragma once

#include "apps/checks/finding.h"

/// @file
/// Every rule of the check, in one table for the checks and for the help.

namespace tooldb::rule {

using Rule = Findings::Rule;
inline constexpr auto kError = Finding::Severity::kError;
inline constexpr auto kWarning = Finding::Severity::kWarning;

inline constexpr Rule kUnreadable = {"unreadable", kError,
                                     "mend the file, or take it from a backup"};
inline constexpr Rule kFileName = {"file-name", kError,
                                   "rename the file to what its code is written as"};
inline constexpr Rule kCode = {"code", kError, "give the tool another code with 'tooldb rename'"};
inline constexpr Rule kDuplicate = {"duplicate", kError, "rename or remove one of the two"};
inline constexpr Rule kPortability = {
    "portability", kWarning, "give it another code: other systems cannot have a file of this name"};
inline constexpr Rule kText = {
    "text", kError, "change the text with 'tooldb set' before the file is written again"};
inline constexpr Rule kParameterName = {"parameter-name", kError,
                                        "remove it with 'tooldb set --unset param.NAME', or "
                                        "ITEM.NAME where it is a part's"};
inline constexpr Rule kComponent = {"component", kError,
                                    "add the component with 'tooldb add', or link its folder with "
                                    "--components"};
inline constexpr Rule kReference = {"reference", kError, "correct the name of the parent"};
inline constexpr Rule kModel = {
    "model-file", kError, "put the file back, or correct the path with 'tooldb set ITEM.file='"};
inline constexpr Rule kOutline = {"outline", kError, "correct the parameter with 'tooldb set'"};
inline constexpr Rule kCrossing = {"crossing", kError, "draw the outline without crossing itself"};
inline constexpr Rule kGap = {"gap", kError,
                              "move the parts together with 'tooldb set ITEM.position='"};
inline constexpr Rule kOverlap = {"overlap", kError,
                                  "move the parts apart with 'tooldb set ITEM.position='"};
inline constexpr Rule kBore = {"bore", kError, "take a thinner shank or a wider holder"};
inline constexpr Rule kCuttingLength = {"cutting-length", kError,
                                        "shorten the cutting length, or lengthen the tool"};
inline constexpr Rule kDepth = {"depth-of-cut", kWarning,
                                "lower the depth of cut with 'tooldb set conditions.ap='"};
inline constexpr Rule kNoCutter = {"no-cutter", kWarning, "add a cutting tool"};

}  // namespace tooldb::rule
