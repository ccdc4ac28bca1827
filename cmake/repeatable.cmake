# Where and when a release was built doesn't show in its files: archives keep no times and owners, and paths that a
# compiler writes down begin at the tree. Other builds keep whole paths, by which debuggers and coverage find sources.
set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcD <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "<CMAKE_RANLIB> -D <TARGET>")

add_library(veldnls_repeatable INTERFACE)
target_compile_options(veldnls_repeatable INTERFACE
  $<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>
  $<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=.>)
