add_library(zuvi_test_support STATIC
            ${CMAKE_CURRENT_LIST_DIR}/CertificatesGnuTls.cpp
            ${CMAKE_CURRENT_LIST_DIR}/LoopbackServerMicrohttpd.cpp
            ${CMAKE_CURRENT_LIST_DIR}/ScopedEnvironment.cpp
            ${CMAKE_CURRENT_LIST_DIR}/TemporaryFolder.cpp)
target_sources(zuvi_test_support INTERFACE
               ${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cpp)
target_link_libraries(zuvi_test_support PUBLIC zuvi_options Threads::Threads)
zuvi_use_packages(zuvi_test_support libmicrohttpd gnutls)
