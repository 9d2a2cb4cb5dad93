#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

// A tool is asked through its items; cutting tools and links have no shape of their own.

bool tdbTool::GetProfile(kinSceneManager* /*scene*/,
                         std::vector<std::vector<Point2d<double>>>& /*contours*/,
                         double /*tolerance*/, long /*mode*/) {
  return true;
}

bool tdbTool::GetShape(kinSceneManager* /*scene*/, std::vector<Triangle<double>>& /*triangles*/,
                       double /*tolerance*/) {
  return false;
}

kinShape* tdbTool::CreateShape(kinSceneManager* /*scene*/, double /*tolerance*/, bool /*extend*/,
                               double /*extension*/, bool* empty, int /*flags*/) {
  if (empty != nullptr) *empty = true;
  return nullptr;
}
