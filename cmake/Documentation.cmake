# The reference: `cmake --build ... --target docs` makes HTML and manual pages from the public headers, in docs/ of the
# build folder. With KEL_MANUAL they are built with everything else, and the manual pages are installed.
option(KEL_MANUAL "Build and install the manual pages (needs doxygen and python3)" OFF)

find_program(DOXYGEN doxygen)
find_package(Python3 COMPONENTS Interpreter)
if(NOT DOXYGEN OR NOT Python3_FOUND)
    if(KEL_MANUAL)
        message(FATAL_ERROR "KEL_MANUAL needs doxygen and python3")
    endif()
    return()
endif()

set(KEL_REFERENCE_FOLDER ${PROJECT_BINARY_DIR}/docs)
file(GLOB reference_parts CONFIGURE_DEPENDS docs/reference/* include/kel/*.h)
add_custom_command(OUTPUT ${KEL_REFERENCE_FOLDER}/built
    COMMAND ${PROJECT_SOURCE_DIR}/docs/reference/build ${PROJECT_SOURCE_DIR} ${KEL_REFERENCE_FOLDER} ${PROJECT_VERSION}
    COMMAND ${CMAKE_COMMAND} -E touch ${KEL_REFERENCE_FOLDER}/built
    DEPENDS ${reference_parts} softnode/softnode.h
    COMMENT "Making the reference of the public headers")

if(KEL_MANUAL)
    add_custom_target(docs ALL DEPENDS ${KEL_REFERENCE_FOLDER}/built)
    install(DIRECTORY ${KEL_REFERENCE_FOLDER}/man3/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT kel-core-ic-dev)
else()
    add_custom_target(docs DEPENDS ${KEL_REFERENCE_FOLDER}/built)
endif()
