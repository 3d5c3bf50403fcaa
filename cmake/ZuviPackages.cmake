# Debian packages: `cpack` in a build folder, best one of the preset "package".
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zuvisdk)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "ZuviSDK developers <sdk@zuvi.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(same "zuvisdk (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME zuvisdk)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "identity-verification kit: library and resources
Programs show one button; behind it a selfie film and photographs of documents
are taken and sent to the verification service.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# What is looked up by name while the program runs: camera, pictures and films; authorities.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS
    "gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, ca-certificates")
# H.264, cameras of the desktop's media server and behind the portal, the camera's dialogue, the
# carrier.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "gstreamer1.0-plugins-bad, gstreamer1.0-pipewire")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "xdg-desktop-portal, modemmanager")
# Of programs that link the library, packages get the range in which it keeps its shape.
math(EXPR next ${PROJECT_VERSION_MINOR}+1)
file(WRITE ${PROJECT_BINARY_DIR}/debian/shlibs "libzuvisdk ${PROJECT_VERSION_MAJOR} zuvisdk \
(>= ${PROJECT_VERSION}), zuvisdk (<< ${PROJECT_VERSION_MAJOR}.${next}~)\n")
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/shlibs
                                               ${PROJECT_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENTS_ALL runtime development)

if(TARGET zuvi_webkitgtk)
  list(APPEND CPACK_COMPONENTS_ALL chat)
  string(APPEND CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS ", zuvisdk-chat (= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_CHAT_PACKAGE_NAME zuvisdk-chat)
  set(CPACK_DEBIAN_CHAT_DESCRIPTION "identity-verification kit: the support chat's browser engine
The kit loads this module with the first page of its support chat. Without it
the chat shows an error.")
  set(CPACK_DEBIAN_CHAT_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_CHAT_PACKAGE_DEPENDS "${same}")
endif()

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME zuvisdk-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "identity-verification kit: headers and static library
What a program needs to be built with the kit, by CMake or by pkg-config.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same}, libgtk-4-dev, pkg-config | pkgconf")
# For programs that link the static library.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS
    "libcurl4-openssl-dev, libgif-dev, libgstreamer-plugins-base1.0-dev, libicu-dev, \
libpugixml-dev, librsvg2-dev, nlohmann-json3-dev")

if(TARGET zuvi-sandbox OR TARGET zuvi-demo)
  list(APPEND CPACK_COMPONENTS_ALL tools)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zuvisdk-tools)
  set(CPACK_DEBIAN_TOOLS_DESCRIPTION "identity-verification kit: programs
zuvi-verify runs one verification for a program in any language, zuvi-sandbox
answers in the verification service's place on this machine, and zuvi-demo
is a small host program to try the kit with.")
  set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${same}") # their windows show its resources
endif()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} key)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/copyright COMPONENT ${component}
    DESTINATION share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
endforeach()
include(CPack)
