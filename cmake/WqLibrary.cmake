# How the libraries of the family are built: libwq_NAME, target wq::NAME. Shared ones, unless BUILD_SHARED_LIBS is OFF; static ones can go into
# a host's own shared library too.

if(NOT DEFINED BUILD_SHARED_LIBS)
  set(BUILD_SHARED_LIBS ON)
endif()

set(WQ_WARNINGS
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Woverloaded-virtual)

# Without this, 32-bit x86 computes with more digits than a double has, and rounds them away here and there.
set(WQ_ARITHMETIC -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86|i[3-6]86|x86_64|AMD64)$")
  list(APPEND WQ_ARITHMETIC -msse2 -mfpmath=sse)
endif()

# What an attacker who writes past a buffer meets. Where C libraries other than those of Linux need a library of their own for it, it is left out.
option(WQ_HARDENING "Build libraries and tools with stack protector, checked C functions and read-only relocations" ON)
if(WQ_HARDENING AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(WQ_HARDENING_OPTIONS -fstack-protector-strong
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
  set(WQ_HARDENING_LINK_OPTIONS LINKER:-z,relro LINKER:-z,now)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# wq_harden(TARGET): what is installed is hardened, a program also by being loaded anywhere.
function(wq_harden target)
  target_compile_options(${target} PRIVATE ${WQ_HARDENING_OPTIONS})
  target_link_options(${target} PRIVATE ${WQ_HARDENING_LINK_OPTIONS})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

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

# Compile options of all code that goes into a shared library.
function(wq_library_code target)
  wq_compile_options(${target})
  wq_harden(${target})
  # Calls within a library go straight to its own functions: no host replaces single ones, and small ones can be inlined.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-semantic-interposition> ${WQ_LIBRARY_OPTIONS})
  # The same bytes whatever the folder that they are built in; a debugger is to find the sources, and coverage too.
  foreach(folder IN ITEMS ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
    target_compile_options(${target} PRIVATE $<$<AND:$<CXX_COMPILER_ID:GNU,Clang>,$<NOT:$<CONFIG:Debug>>>:-ffile-prefix-map=${folder}=.>)
  endforeach()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

set(WQ_EXPORT_MAP ${PROJECT_BINARY_DIR}/exports.map)
configure_file(${CMAKE_CURRENT_LIST_DIR}/exports.map.in ${WQ_EXPORT_MAP} @ONLY)

# wq_library(NAME BASE folder SOURCES files... [INCLUDES folders...] [PUBLIC|PRIVATE targets...]). The public headers are BASE/wq_NAME/*.h;
# PUBLIC names the libraries whose headers these include. INCLUDES are the folders that private headers are named from: the library's own, and
# support for "numbers/...".
function(wq_library name)
  cmake_parse_arguments(arg "" "BASE" "SOURCES;INCLUDES;PUBLIC;PRIVATE" ${ARGN})
  set(target wq_${name})
  string(TOUPPER ${target} prefix)

  file(GLOB headers CONFIGURE_DEPENDS ${arg_BASE}/${target}/*.h)
  add_library(${target} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/cmake/ieee_arithmetic.cpp)
  add_library(wq::${name} ALIAS ${target})
  wq_library_code(${target})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_definitions(${target} PRIVATE ${prefix}_BUILDING)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC WQ_STATIC_LIBRARIES)
  endif()
  list(TRANSFORM arg_INCLUDES PREPEND ${PROJECT_SOURCE_DIR}/)
  target_include_directories(${target} PRIVATE ${arg_INCLUDES})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${arg_BASE} FILES ${headers})
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME ${name}
    INSTALL_RPATH "$ORIGIN"
    BUILD_WITH_INSTALL_RPATH ON)  # the build tree has the libraries in one folder too

  # Linked with -ffast-math, GCC and Clang let a library make subnormal numbers zero in every program that loads it.
  target_link_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-fast-math> $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-unsafe-math-optimizations>)

  # Hidden visibility does not reach instantiations of standard templates; the export map does.
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_link_options(${target} PRIVATE LINKER:--version-script=${WQ_EXPORT_MAP})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${WQ_EXPORT_MAP})
  endif()
endfunction()
