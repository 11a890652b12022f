# How the shared libraries of the family are built: libwq_NAME, target wq::NAME.

set(WQ_WARNINGS
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Woverloaded-virtual)

if(CMAKE_CXX_FLAGS MATCHES "-ffast-math|-Ofast|-funsafe-math-optimizations|-ffinite-math-only|-fassociative-math")
  message(FATAL_ERROR "CMAKE_CXX_FLAGS asks for fast-math (${CMAKE_CXX_FLAGS}). The library relies on IEEE arithmetic: NaN, infinity "
    "and the order of sums.")
endif()

# Without this, 32-bit x86 computes with more digits than a double has, and rounds them away here and there.
set(WQ_ARITHMETIC -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86|i[3-6]86|x86_64|AMD64)$")
  list(APPEND WQ_ARITHMETIC -msse2 -mfpmath=sse)
endif()

# Compile options every target of the project shares: warnings, and the same figures on every processor.
function(wq_compile_options target)
  target_compile_features(${target} PRIVATE cxx_std_17)
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:${WQ_WARNINGS} ${WQ_ARITHMETIC}>
    $<$<CXX_COMPILER_ID:MSVC>:/W4 /fp:precise /utf-8>)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    COMPILE_WARNING_AS_ERROR ${WQ_WARNINGS_AS_ERRORS})
endfunction()

# wq_library(NAME BASE folder SOURCES files... [PUBLIC|PRIVATE targets...]). The public headers are BASE/wq_NAME/*.h; PUBLIC names the
# libraries whose headers these include.
function(wq_library name)
  cmake_parse_arguments(arg "" "BASE" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(target wq_${name})
  string(TOUPPER ${target} prefix)

  file(GLOB headers CONFIGURE_DEPENDS ${arg_BASE}/${target}/*.h)
  add_library(${target} SHARED ${arg_SOURCES})
  add_library(wq::${name} ALIAS ${target})
  wq_compile_options(${target})
  # Calls within a library go straight to its own functions: no host replaces single ones, and small ones can be inlined.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-semantic-interposition> ${WQ_LIBRARY_OPTIONS})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_definitions(${target} PRIVATE ${prefix}_BUILDING)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${arg_BASE} FILES ${headers})
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${name}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    INSTALL_RPATH "$ORIGIN"
    BUILD_WITH_INSTALL_RPATH ON)  # the build tree has the libraries in one folder too

  # Hidden visibility does not reach instantiations of standard templates; the export map does.
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(map ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endfunction()
