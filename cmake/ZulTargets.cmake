# What every target of the project shares: the language level, the warnings and the floating point rules.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

add_library(zul_options INTERFACE)
target_compile_features(zul_options INTERFACE cxx_std_17)
# No contraction: the same doubles on every host. No null pointer tricks: bad input is tested, not assumed away.
target_compile_options(zul_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Werror -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_definitions(zul_options INTERFACE _FILE_OFFSET_BITS=64)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # There -Wconversion means more than what this code keeps to.
  target_compile_options(zul_options INTERFACE -Wno-sign-conversion)
endif()
if(ZUL_SANITIZE)
  target_compile_options(zul_options INTERFACE
    -fsanitize=${ZUL_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zul_options INTERFACE -fsanitize=${ZUL_SANITIZERS})
endif()
if(ZUL_COVERAGE)
  target_compile_options(zul_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(zul_options INTERFACE -fprofile-instr-generate)
endif()
if(ZUL_FUZZ)
  target_compile_options(zul_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# zul_shared_library(NAME): a shared library of the product, its symbols hidden unless exported.
function(zul_shared_library name)
  add_library(${name} SHARED)
  add_library(zulgraphics::${name} ALIAS ${name})
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:zul_options>)
  target_compile_features(${name} PUBLIC cxx_std_17)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zulgraphics>)
  set_target_properties(${name} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
