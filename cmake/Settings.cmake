# Language, warnings, hardening and output folders: the same for every target of ours.
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS ON) # the tracer's header wants GNU C
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# What is built finds our libraries from its own place, so that a build folder can be moved. What is installed, see
# cmake/Install.cmake.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Warnings of our own code are errors; headers of other libraries come in as system headers.
add_library(kel-settings INTERFACE)
target_compile_options(kel-settings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror
    -fstack-protector-strong -fstack-clash-protection -fcf-protection)
target_link_options(kel-settings INTERFACE -Wl,-z,relro,-z,now)

if(KEL_SANITIZE)
    add_compile_options(-fsanitize=${KEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KEL_SANITIZE})
else()
    # A sanitized library leaves the sanitizer's own symbols open, and checks what fortification would.
    target_link_options(kel-settings INTERFACE -Wl,-z,defs)
    target_compile_definitions(kel-settings INTERFACE $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
endif()

# What a fuzz target reaches has to tell the fuzzer where it has been.
if(KEL_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link -fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/not_sanitized.txt)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

# Calls between exported operations go through the PLT, so that they can be replaced one by one. Debug information is of the
# latest version that valgrind 3.19 reads.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(kel-settings INTERFACE -fsemantic-interposition -fdebug-default-version=4)
endif()
