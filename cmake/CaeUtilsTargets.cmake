# What every target of the tree is made of: build-only INTERFACE targets (warnings, sanitizers),
# and the two functions that define a shared library and one of its modules.

include(GNUInstallDirs)

if(PROJECT_IS_TOP_LEVEL)
  find_program(CAEUTILS_CCACHE ccache)
  if(CAEUTILS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CAEUTILS_CCACHE}")
  endif()
endif()

# --- Build-only targets, always linked PRIVATE so that users inherit nothing -----------------

add_library(caeutils_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(
    caeutils_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wconversion
              -Wsign-conversion
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wold-style-cast
              -Wcast-align
              -Wcast-qual
              -Wformat=2
              -Wimplicit-fallthrough
              -Wmissing-declarations
              -Wextra-semi
              -Wundef
              -Wsuggest-override
              $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
              $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
              $<$<BOOL:${CAEUTILS_WARNINGS_AS_ERRORS}>:-Werror>)
elseif(MSVC)
  target_compile_options(
    caeutils_warnings INTERFACE /W4 /permissive-
                                $<$<BOOL:${CAEUTILS_WARNINGS_AS_ERRORS}>:/WX>)
endif()

# Instrumentation: sanitizers or coverage, nothing in a plain build. GCC leaves the check of
# float-to-integer casts out of "undefined", so it is named.
add_library(caeutils_instrumentation INTERFACE)
if(CAEUTILS_SANITIZE)
  set(sanitize -fsanitize=${CAEUTILS_SANITIZE})
  if(CAEUTILS_SANITIZE MATCHES "undefined")
    list(APPEND sanitize -fsanitize=float-cast-overflow)
  endif()
  target_compile_options(caeutils_instrumentation INTERFACE ${sanitize} -fno-sanitize-recover=all
                                                            -fno-omit-frame-pointer)
  target_link_options(caeutils_instrumentation INTERFACE ${sanitize})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code hides from GCC what is initialised: it warns inside std::regex, for one.
    target_compile_options(caeutils_instrumentation INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_compile_definitions(caeutils_instrumentation INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(CAEUTILS_COVERAGE)
  target_compile_options(caeutils_instrumentation INTERFACE --coverage -fprofile-abs-path)
  target_link_options(caeutils_instrumentation INTERFACE --coverage)
endif()

# Everything an own target compiles with.
add_library(caeutils_build INTERFACE)
target_link_libraries(caeutils_build INTERFACE caeutils_warnings caeutils_instrumentation)
target_compile_features(caeutils_build INTERFACE cxx_std_20)

# What an own executable needs beside that: the sanitizers' run-time defaults, so that it behaves
# the same whoever starts it.
add_library(caeutils_executable INTERFACE)
target_link_libraries(caeutils_executable INTERFACE caeutils_build)
if(CAEUTILS_SANITIZE)
  target_sources(caeutils_executable INTERFACE "${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cpp")
endif()

# Exact arithmetic: a product and a sum are rounded one by one, on every instruction set.
add_library(caeutils_exact_arithmetic INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(caeutils_exact_arithmetic INTERFACE -ffp-contract=off)
endif()

# --- Libraries and modules ---------------------------------------------------------------------

# Properties shared by the shared libraries and the object libraries that they are made of.
# <macro> is the export macro's prefix: <macro>_BUILD is defined while compiling.
function(caeutils_compile_as_library target macro)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
  target_compile_definitions(${target} PRIVATE ${macro}_BUILD)
  target_link_libraries(${target} PRIVATE caeutils_build)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # Nobody replaces a single exported function at load time; calls inside a library may inline.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  endif()
endfunction()

# caeutils_sources(<out>): the sources in impl/ of the current folder. A module that is headers
# only gets an empty source, since an object library must have one.
function(caeutils_sources out)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/impl/*.cpp")
  if(NOT sources)
    set(sources "${CMAKE_CURRENT_BINARY_DIR}/empty.cpp")
    file(CONFIGURE OUTPUT "${sources}" CONTENT "")
  endif()
  set(${out} "${sources}" PARENT_SCOPE)
endfunction()

# caeutils_public_headers(<target> <scope> <folder>...): the headers right inside the folders are
# the target's public file set, each checked to compile alone (all_verify_interface_header_sets),
# and installed flat.
function(caeutils_public_headers target scope)
  list(TRANSFORM ARGN APPEND "/*.h" OUTPUT_VARIABLE patterns)
  file(GLOB headers CONFIGURE_DEPENDS ${patterns})
  target_sources(${target} ${scope} FILE_SET HEADERS BASE_DIRS ${ARGN} FILES ${headers})
  set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# caeutils_shared_library(<name> <macro>): the shared library TVXUTI_<name>, without its sources;
# CaeUtils::<name> to its users, in this build and after installation.
function(caeutils_shared_library name macro)
  set(target TVXUTI_${name})
  add_library(${target} SHARED)
  add_library(CaeUtils::${name} ALIAS ${target})
  caeutils_compile_as_library(${target} ${macro})
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(
    ${target}
    PROPERTIES EXPORT_NAME ${name}
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}
               LINKER_LANGUAGE CXX
               INSTALL_RPATH "$ORIGIN")
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(exports "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/exports.map")
    set(shared_data "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/one_per_process.list")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}"
                                          "LINKER:--dynamic-list=${shared_data}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS "${exports};${shared_data}")
    if(NOT CAEUTILS_SANITIZE)
      # A library that calls what it does not link, links wrong.
      target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
  endif()
endfunction()

# caeutils_module(<name> [USES <module>...]): one module of libTVXUTI_CaeUtils, as the object
# library caeutils_<name>. It sees its own folder, src/include, src/cow, the two platform
# libraries and the modules it USES; any other include does not compile. Headers in impl/ are
# seen by the module alone.
function(caeutils_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "USES")
  set(target caeutils_${name})
  caeutils_sources(sources)
  add_library(${target} OBJECT ${sources})
  caeutils_compile_as_library(${target} CAE)
  caeutils_public_headers(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
  target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/impl")
  list(TRANSFORM arg_USES PREPEND caeutils_)
  target_link_libraries(${target} PUBLIC caeutils_include ${arg_USES})
  target_link_libraries(TVXUTI_CaeUtils PRIVATE ${target})
endfunction()
