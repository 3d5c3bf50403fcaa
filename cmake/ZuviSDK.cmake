# What a host links, and its installation: the objects of the folders' libraries as one shared and
# one static library.
find_package(GIF 5 REQUIRED)

set(folders zuvi_dispatch zuvi_foundation zuvi_coregraphics zuvi_imageio zuvi_coretext
            zuvi_coretelephony zuvi_quartzcore zuvi_uikit zuvi_avfoundation zuvi_webkit zuvi_kit)
list(TRANSFORM folders REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
set(packages)
foreach(folder IN LISTS folders)
  get_target_property(wanted ${folder} ZUVI_PACKAGES)
  list(APPEND packages ${wanted})
endforeach()
list(REMOVE_DUPLICATES packages)

add_library(zuvi_sdk SHARED ${objects})
add_library(zuvi_sdk_static STATIC ${objects})
add_library(ZuviSDK::ZuviSDK ALIAS zuvi_sdk)
add_library(ZuviSDK::Static ALIAS zuvi_sdk_static)
set_target_properties(zuvi_sdk PROPERTIES
  EXPORT_NAME ZuviSDK VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  # Beside the bundle and the engine's module, where the library looks for them.
  LIBRARY_OUTPUT_DIRECTORY $<1:${PROJECT_BINARY_DIR}>) # also with many configurations
set_target_properties(zuvi_sdk_static PROPERTIES EXPORT_NAME Static)
set(exports ${CMAKE_CURRENT_LIST_DIR}/abi/zuvisdk.map)
target_link_options(zuvi_sdk PRIVATE -Wl,--as-needed -Wl,--version-script=${exports})
set_target_properties(zuvi_sdk PROPERTIES LINK_DEPENDS ${exports})
if(ZUVI_SANITIZE)
  target_link_options(zuvi_sdk PRIVATE -fsanitize=${ZUVI_SANITIZE})
else()
  target_link_options(zuvi_sdk PRIVATE -Wl,-z,defs)
endif()
foreach(library zuvi_sdk zuvi_sdk_static)
  set_target_properties(${library} PROPERTIES OUTPUT_NAME zuvisdk LINKER_LANGUAGE CXX)
  target_compile_features(${library} INTERFACE cxx_std_20)
  # What lies in these folders is public: a host in the same build sees what any host sees.
  target_include_directories(${library} SYSTEM INTERFACE
    "$<BUILD_INTERFACE:${ZUVI_PUBLIC_HEADERS}>" $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  foreach(package IN LISTS packages)
    string(MAKE_C_IDENTIFIER "PKG_${package}" prefix)
    pkg_check_modules(${prefix} REQUIRED IMPORTED_TARGET ${package})
    target_link_libraries(${library} PRIVATE PkgConfig::${prefix})
  endforeach()
  target_link_libraries(${library} PRIVATE GIF::GIF Threads::Threads)
  target_link_libraries(${library} INTERFACE PkgConfig::PKG_gtk4) # ScreenWidget.h
  add_dependencies(${library} zuvi_bundle)
  if(TARGET zuvi_webkitgtk)
    add_dependencies(${library} zuvi_webkitgtk)
  endif()
endforeach()

if(NOT PROJECT_IS_TOP_LEVEL)
  set_target_properties(zuvi_sdk_static PROPERTIES EXCLUDE_FROM_ALL ON)
  return()
endif()

# Places. The library finds its bundle and its modules from where it lies itself.
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ZuviSDK)
install(TARGETS zuvi_sdk EXPORT ZuviSDKTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
install(DIRECTORY ${ZUVI_BUNDLE_FOLDER} DESTINATION share/zuvisdk COMPONENT runtime)
if(TARGET zuvi_webkitgtk)
  install(TARGETS zuvi_webkitgtk
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/zuvisdk COMPONENT chat)
endif()

install(TARGETS zuvi_sdk_static EXPORT ZuviSDKStaticTargets ARCHIVE COMPONENT development)
foreach(folder IN LISTS ZUVI_PUBLIC_HEADERS)
  install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
endforeach()
foreach(export ZuviSDKTargets ZuviSDKStaticTargets)
  install(EXPORT ${export} NAMESPACE ZuviSDK:: DESTINATION ${cmake_folder} COMPONENT development)
endforeach()

include(CMakePackageConfigHelpers)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZuviSDKConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZuviSDKConfig.cmake
  INSTALL_DESTINATION ${cmake_folder} PATH_VARS CMAKE_INSTALL_LIBDIR)
# Before 1.0 every minor version may change what hosts see.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZuviSDKConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/zuvisdk.pc.in ${PROJECT_BINARY_DIR}/zuvisdk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZuviSDKConfig.cmake
  ${PROJECT_BINARY_DIR}/ZuviSDKConfigVersion.cmake
  DESTINATION ${cmake_folder} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/zuvisdk.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
