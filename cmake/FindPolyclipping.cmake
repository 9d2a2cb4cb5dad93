# Clipper 6.4, as Debian packages it: polyclipping/clipper.hpp and libpolyclipping.
find_path(Polyclipping_INCLUDE_DIR polyclipping/clipper.hpp)
find_library(Polyclipping_LIBRARY polyclipping)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Polyclipping
  REQUIRED_VARS Polyclipping_LIBRARY Polyclipping_INCLUDE_DIR)
if(Polyclipping_FOUND AND NOT TARGET Polyclipping::Polyclipping)
  add_library(Polyclipping::Polyclipping UNKNOWN IMPORTED)
  set_target_properties(Polyclipping::Polyclipping PROPERTIES
    IMPORTED_LOCATION ${Polyclipping_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${Polyclipping_INCLUDE_DIR})
endif()
mark_as_advanced(Polyclipping_INCLUDE_DIR Polyclipping_LIBRARY)
