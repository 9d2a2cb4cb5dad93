#include "tooldb/profile.h"
#include "tooldb/scene.h"
#include "tooldb/tool_parts.h"

#define NO_SHAPE(Class)                                                                            \
  bool Class::GetShape(kinSceneManager*, std::vector<Triangle<double>>&, double) { return false; } \
  kinShape* Class::CreateShape(kinSceneManager*, double, bool, double, bool* empty, int) {         \
    if (empty != nullptr) *empty = true;                                                           \
    return nullptr;                                                                                \
  }
NO_SHAPE(tdbToolComponent)
NO_SHAPE(tdbCuttingTool)
NO_SHAPE(tdbToolCutter)
NO_SHAPE(tdbToolShank)
NO_SHAPE(tdbToolHolder)
NO_SHAPE(tdbFixedLink)
NO_SHAPE(tdbToolAngleHead)

bool tdbItem::GetProfile(kinSceneManager*, std::vector<std::vector<Point2d<double>>>&, double,
                         long) {
  return false;
}
bool tdbToolComponent::GetProfile(kinSceneManager*, std::vector<std::vector<Point2d<double>>>&,
                                  double, long) {
  return false;
}
kinObject::~kinObject() = default;
kinSceneManager::~kinSceneManager() = default;
