#pragma once

/// @file
/// All of tooldb.

#include "tooldb/composite_item.h"
#include "tooldb/contour.h"
#include "tooldb/cutting_conditions.h"
#include "tooldb/error.h"
#include "tooldb/export.h"
#include "tooldb/file_manager.h"
#include "tooldb/geometry.h"
#include "tooldb/item.h"
#include "tooldb/object.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"
#include "tooldb/scene.h"
#include "tooldb/stl.h"
#include "tooldb/tool.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_makers.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"
#include "tooldb/util.h"
#include "tooldb/version.h"
#include "tooldb/xml_reader.h"
