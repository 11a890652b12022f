# One shared library of the family: libwq_NAME, target wq::NAME.

set(WQ_WARNINGS
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Woverloaded-virtual)

# Compile options every target of the project shares: warnings, and the same figures on every processor.
function(wq_compile_options target)
  target_compile_features(${target} PRIVATE cxx_std_17)
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang>:${WQ_WARNINGS} -ffp-contract=off>
    $<$<CXX_COMPILER_ID:MSVC>:/W4 /fp:precise>)
  if(WQ_WARNINGS_AS_ERRORS)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ON)
  endif()
endfunction()

function(wq_library name)
  cmake_parse_arguments(arg "" "BASE" "SOURCES;USES" ${ARGN})
  set(target wq_${name})
  string(TOUPPER ${target} prefix)

  file(GLOB headers CONFIGURE_DEPENDS ${arg_BASE}/${target}/*.h)
  add_library(${target} SHARED ${arg_SOURCES})
  add_library(wq::${name} ALIAS ${target})
  wq_compile_options(${target})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_definitions(${target} PRIVATE ${prefix}_BUILDING)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${arg_BASE} FILES ${headers})
  target_link_libraries(${target} PUBLIC ${arg_USES})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${name}
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    BUILD_RPATH_USE_ORIGIN ON
    INSTALL_RPATH "$ORIGIN")
endfunction()
