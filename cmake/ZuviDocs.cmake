# The reference for integrators: what the public headers say, with README.md and docs/, as HTML in
# the build folder. What lacks a comment is an error.
include(PublicHeaders)
find_package(Doxygen)
if(NOT DOXYGEN_FOUND)
  return()
endif()

set(umbrella kit/include/ZuviSDK/ZuviSDK.h)
zuvi_public_headers(public_headers ${umbrella})
file(GLOB pages CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/docs/*.md)

set(DOXYGEN_PROJECT_BRIEF "Identity-verification kit")
set(DOXYGEN_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/docs)
set(DOXYGEN_HTML_OUTPUT .)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE README.md)
set(DOXYGEN_IMAGE_PATH ${PROJECT_SOURCE_DIR}/docs)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED ZUVI_API=)
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_DISTRIBUTE_GROUP_DOC YES)
set(DOXYGEN_EXTRACT_PRIVATE NO)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_WARN_IF_UNDOCUMENTED YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
doxygen_add_docs(docs README.md ${pages} ${umbrella} ${public_headers}
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} COMMENT "Writing the reference")

if(ZUVI_TESTS)
  add_test(NAME docs COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target docs)
  set_tests_properties(docs PROPERTIES LABELS docs)
endif()
