# Constant tables are made from the text under data/ by the programs of tools/gen, into one folder of the build tree.
set(VELDNLS_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${VELDNLS_GENERATED_DIR}/veldnls)

add_library(veldnls_generated INTERFACE)
target_include_directories(veldnls_generated INTERFACE ${VELDNLS_GENERATED_DIR})

# Sanitizers and second compilers tell nothing of a table, and slow its generator down.
set(VELDNLS_GENERATORS_FROM "" CACHE PATH "A build folder of this tree whose table generators make the tables; empty: own ones")

# veldnls_generate(NAME <name> GENERATOR <target> OUTPUTS <files...> INPUTS <files...> [ARGS <args...>])
#
# Runs `<generator> --data <source>/data --out <generated> <args...>` whenever an input changes. Outputs are named
# relative to the generated folder, inputs relative to the source tree. Whoever links veldnls_generated waits for it.
function(veldnls_generate)
  cmake_parse_arguments(GEN "" "NAME;GENERATOR" "OUTPUTS;INPUTS;ARGS" ${ARGN})
  list(TRANSFORM GEN_OUTPUTS PREPEND ${VELDNLS_GENERATED_DIR}/ OUTPUT_VARIABLE outputs)
  list(TRANSFORM GEN_INPUTS PREPEND ${CMAKE_SOURCE_DIR}/ OUTPUT_VARIABLE inputs)
  set(generator ${GEN_GENERATOR})
  if(VELDNLS_GENERATORS_FROM)
    set(generator ${VELDNLS_GENERATORS_FROM}/${GEN_GENERATOR})
    set_target_properties(${GEN_GENERATOR} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
  add_custom_command(
    OUTPUT ${outputs}
    COMMAND ${generator} --data ${CMAKE_SOURCE_DIR}/data --out ${VELDNLS_GENERATED_DIR} ${GEN_ARGS}
    DEPENDS ${generator} ${inputs}
    COMMENT "Tables: ${GEN_NAME}"
    VERBATIM)
  add_custom_target(veldnls_tables_${GEN_NAME} DEPENDS ${outputs})
  add_dependencies(veldnls_generated veldnls_tables_${GEN_NAME})
endfunction()
