#include "apps/command.h"

namespace tooldb {

extern const Command kInit;
extern const Command kList;
extern const Command kShow;
extern const Command kAdd;
extern const Command kImport;
extern const Command kExport;
extern const Command kCheck;
extern const Command kDraw;
extern const Command kMesh;
extern const Command kProfile;
extern const Command kSet;
extern const Command kClone;
extern const Command kRename;
extern const Command kRemove;
extern const Command kComponents;
extern const Command kCompletion;

std::span<const Command* const> commands() {
  static constexpr const Command* kTable[] = {
      &kInit, &kList,    &kShow, &kAdd,   &kImport, &kExport, &kCheck,      &kDraw,
      &kMesh, &kProfile, &kSet,  &kClone, &kRename, &kRemove, &kComponents, &kCompletion};
  return kTable;
}

}  // namespace tooldb
