# A module, so that the program has no browser engine in it before it asks for one.
add_library(bare_page MODULE BarePageGtk.cpp)
target_link_libraries(bare_page PRIVATE zuvi_options)
zuvi_use_packages(bare_page webkitgtk-6.0)
zuvi_bench(chat_bench LINKS zuvi_kit zuvi_sandbox_core PACKAGES gtk4)
target_compile_definitions(chat_bench PRIVATE ZUVI_BARE_PAGE="$<TARGET_FILE:bare_page>")
add_dependencies(chat_bench bare_page)
zuvi_bench(chat_frame_bench LINKS zuvi_kit zuvi_sandbox_core)
