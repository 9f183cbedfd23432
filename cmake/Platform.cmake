# kel-platform: what provides the closed libraries. The software accelerator, or whatever a site names instead.
add_library(kel-platform INTERFACE)
if(KEL_PLATFORM STREQUAL "softnode")
    target_link_libraries(kel-platform INTERFACE kel-softnode)
else()
    target_link_libraries(kel-platform INTERFACE ${KEL_PLATFORM})
endif()
