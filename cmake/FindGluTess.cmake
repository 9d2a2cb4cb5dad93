# The GLU tessellator: libGLU where there is one, else glutess (the tessellator alone).
find_path(GluTess_INCLUDE_DIR GL/glu.h)
find_library(GluTess_LIBRARY NAMES glutess GLU glu32)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GluTess REQUIRED_VARS GluTess_LIBRARY GluTess_INCLUDE_DIR)
if(GluTess_FOUND AND NOT TARGET GluTess::GluTess)
  add_library(GluTess::GluTess UNKNOWN IMPORTED)
  set_target_properties(GluTess::GluTess PROPERTIES
    IMPORTED_LOCATION ${GluTess_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${GluTess_INCLUDE_DIR})
endif()
mark_as_advanced(GluTess_INCLUDE_DIR GluTess_LIBRARY)
