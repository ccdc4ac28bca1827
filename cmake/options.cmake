# Warnings for all code of the project; every one is an error.
add_library(veldnls_strict INTERFACE)
target_compile_options(veldnls_strict INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor>
  # g++ 12 takes the insertion of std::string for an overlapping copy (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(VELDNLS_SANITIZE)
  # What g++ instruments it follows less well: it warns of members of std::regex and std::function that are set.
  target_compile_options(veldnls_strict INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_compile_options(-fsanitize=${VELDNLS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VELDNLS_SANITIZE})
endif()

# For code that takes longer to compile than to run. Under sanitizers optimising is dear.
set(VELDNLS_HASTY_OPTIONS $<$<CONFIG:Release>:-O1>)
if(VELDNLS_SANITIZE)
  set(VELDNLS_HASTY_OPTIONS -O0 -g0)
endif()
