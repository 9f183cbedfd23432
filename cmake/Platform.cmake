# kel-platform: what provides the closed libraries. KEL_PLATFORM says:
#
#     softnode                        the software accelerator stands in for all of them (default)
#     kel_fmt=vendor-fmt;ork=...      these are a vendor's, the software accelerator stands in for the others
#     vendor-sdk;vendor-more          the software accelerator is not used; these provide everything
#
# A vendor's library is whatever CMake can link: a target, a name as in -lNAME, or a file.
set(KEL_CLOSED_LIBRARIES kei_util kel_fmt kel_init ork qol_ng vorn_tu)

set(vendor_libraries "")
set(KEL_STOOD_IN_FOR ${KEL_CLOSED_LIBRARIES}) # by the software accelerator
foreach(entry IN LISTS KEL_PLATFORM)
    if(entry STREQUAL "softnode")
        continue()
    elseif(NOT entry MATCHES "^([^=]+)=(.+)$")
        list(APPEND vendor_libraries ${entry})
        set(KEL_STOOD_IN_FOR "")
        continue()
    endif()
    if(NOT CMAKE_MATCH_1 IN_LIST KEL_CLOSED_LIBRARIES)
        list(JOIN KEL_CLOSED_LIBRARIES ", " known)
        message(FATAL_ERROR "KEL_PLATFORM: \"${CMAKE_MATCH_1}\" is not one of the closed libraries ${known}")
    endif()
    list(APPEND vendor_libraries ${CMAKE_MATCH_2})
    list(REMOVE_ITEM KEL_STOOD_IN_FOR ${CMAKE_MATCH_1})
endforeach()

add_library(kel-platform INTERFACE)
target_link_libraries(kel-platform INTERFACE ${vendor_libraries})
if(KEL_STOOD_IN_FOR)
    target_link_libraries(kel-platform INTERFACE kel-softnode)
endif()

# The tests know what the software accelerator answers.
if(KEL_TESTS AND NOT KEL_STOOD_IN_FOR STREQUAL KEL_CLOSED_LIBRARIES)
    message(STATUS "No tests: they need the software accelerator in place of every closed library")
    set(KEL_TESTS OFF)
endif()
