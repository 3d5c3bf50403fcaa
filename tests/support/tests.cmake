add_library(zuvi_test_support STATIC
            ${CMAKE_CURRENT_SOURCE_DIR}/support/CertificatesGnuTls.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/support/LoopbackServerMicrohttpd.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/support/ScopedEnvironment.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/support/TemporaryFolder.cpp)
target_sources(zuvi_test_support INTERFACE
               ${CMAKE_CURRENT_SOURCE_DIR}/support/SanitizerDefaults.cpp)
target_link_libraries(zuvi_test_support PUBLIC zuvi_options Threads::Threads)
zuvi_use_packages(zuvi_test_support libmicrohttpd gnutls)
