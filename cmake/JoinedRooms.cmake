# With KEL_JOIN_ROOMS, each room of the largest targets is compiled as one file. From nothing kelctl and what it needs take
# 0.62 of the processor time that way, the demo build 0.72, since most of it goes into headers and templates that nearly
# every file of a room needs again; after a change to one file its whole room is compiled, five to ten seconds in place of
# two.
function(join_rooms target)
    get_target_property(folder ${target} SOURCE_DIR)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX [.]cpp$)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${folder})
        cmake_path(GET source PARENT_PATH room)
        cmake_path(GET room FILENAME room)
        set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${room})
    endforeach()
    # A parameter of one file may be called like a function of another.
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ON
        UNITY_BUILD_MODE GROUP
        UNITY_BUILD_CODE_BEFORE_INCLUDE "#pragma GCC diagnostic ignored \"-Wshadow\"")
endfunction()

# compile_alone(TARGET FILE...): files with a name in an unnamed namespace that another file of their room has, too.
function(compile_alone target)
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

foreach(target softnode-engine kel-softnode kelctl-core kel-trace-core kel-exporter-core)
    join_rooms(${target})
endforeach()
compile_alone(kelctl-core
    kelctl/change/discrepancies.cpp
    kelctl/commands/commands_node_file.cpp
    kelctl/commands/commands_pcep.cpp
    kelctl/commands/commands_statistics.cpp
    kelctl/documents/node_manual.cpp
    kelctl/jobs/take_down.cpp
    kelctl/language/help.cpp)
if(NOT KEL_TESTS OR KEL_TESTS STREQUAL "UNIT")
    return()
endif()

foreach(target kelctl-unit-tests kel-trace-unit-tests kel-exporter-unit-tests softnode-test)
    join_rooms(${target})
endforeach()
compile_alone(kelctl-unit-tests
    tests/kelctl/change/apply_test.cpp
    tests/kelctl/change/change_plan_test.cpp
    tests/kelctl/change/difference_test.cpp
    tests/kelctl/nodefile/node_rules_test.cpp
    tests/kelctl/session/undo_test.cpp
    tests/kelctl/views/node_view_test.cpp)
