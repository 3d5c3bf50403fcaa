# One static library a folder: every .cpp below it. Public headers are included as <ZuviSDK/...>,
# private ones from the repository's root.
#
#   zuvi_library(<name> LINKS <library>... PACKAGES <pkg-config name>...)
#   zuvi_program(<name> LINKS <library>... PACKAGES <pkg-config name>...)

add_library(zuvi_options INTERFACE)
set(ZUVI_PUBLIC_HEADERS ${PROJECT_SOURCE_DIR}/kit/include ${PROJECT_SOURCE_DIR}/platform/include)
target_include_directories(zuvi_options INTERFACE ${PROJECT_SOURCE_DIR} ${ZUVI_PUBLIC_HEADERS})
# As a part of somebody else's project the kit imposes no warnings, and takes none.
if(PROJECT_IS_TOP_LEVEL)
  target_compile_options(zuvi_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                                -Woverloaded-virtual)
else()
  target_compile_options(zuvi_options INTERFACE -w)
endif()
# GCC 12 reports these falsely in the library's own optional and string when it inlines them.
target_compile_options(zuvi_options INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-restrict>)
if(ZUVI_SANITIZE)
  target_compile_options(zuvi_options INTERFACE -fsanitize=${ZUVI_SANITIZE} -fno-omit-frame-pointer
                                                -fno-sanitize-recover=all)
  target_link_options(zuvi_options INTERFACE -fsanitize=${ZUVI_SANITIZE})
endif()

function(zuvi_use_packages target)
  foreach(package IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER "PKG_${package}" prefix)
    pkg_check_modules(${prefix} REQUIRED IMPORTED_TARGET ${package})
    target_link_libraries(${target} PRIVATE PkgConfig::${prefix})
  endforeach()
endfunction()

function(zuvi_library name)
  cmake_parse_arguments(ARG "" "" "LINKS;PACKAGES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/Resources/") # programs that make resources
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON
                                           ZUVI_PACKAGES "${ARG_PACKAGES}")
  target_link_libraries(${name} PUBLIC zuvi_options ${ARG_LINKS})
  zuvi_use_packages(${name} ${ARG_PACKAGES})
endfunction()

# Programs of this folder find the bundle and the browser engine beside themselves, as they would
# where they are installed.
function(zuvi_place_resources)
  set(resources ZuviSDK.bundle)
  if(ZUVI_CHAT)
    list(APPEND resources ${ZUVI_WEB_MODULE})
  endif()
  foreach(resource IN LISTS resources)
    file(CREATE_LINK ${PROJECT_BINARY_DIR}/${resource} ${CMAKE_CURRENT_BINARY_DIR}/${resource}
         SYMBOLIC)
  endforeach()
endfunction()

function(zuvi_program name)
  cmake_parse_arguments(ARG "" "" "LINKS;PACKAGES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE zuvi_options ${ARG_LINKS})
  zuvi_use_packages(${name} ${ARG_PACKAGES})
endfunction()
