# A host module NAME.pvx with hidden symbols. Every symbol must resolve
# against the libraries it links; clang's sanitizer runtimes only link into
# executables, so that check is left out of the fuzz build.
function(pavo_host_module target)
  add_library(${target} MODULE ${ARGN})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/host ${CMAKE_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX ".pvx"
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(NOT PAVO_BUILD_FUZZ)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()
