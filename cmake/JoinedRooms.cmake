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
    # GCC takes a joined file for a header, where a type from an unnamed namespace would be another one in each file.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endfunction()

# join_apart(TARGET FILE...): files with a name in an unnamed namespace that another file of their room has, too. They are
# compiled as one file of their own.
function(join_apart target)
    list(GET ARGN 0 first)
    cmake_path(GET first STEM name)
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP apart-${name})
endfunction()

foreach(target kel-socket softnode-engine kel-softnode kelctl-core kel-trace-core kel-exporter-core)
    join_rooms(${target})
endforeach()
join_apart(kelctl-core
    kelctl/change/discrepancies.cpp
    kelctl/commands/commands_pcep.cpp
    kelctl/jobs/take_down.cpp
    kelctl/language/help.cpp)
join_apart(kelctl-core kelctl/commands/commands_node_file.cpp kelctl/commands/commands_statistics.cpp)
if(NOT KEL_TESTS)
    return()
endif()

foreach(target scripted-platform unit-tests)
    join_rooms(${target})
endforeach()
join_apart(scripted-platform tests/unit/scripted_dump_file.cpp tests/unit/scripted_pcep.cpp)
join_apart(scripted-platform tests/unit/scripted_exports.cpp)
join_apart(unit-tests
    tests/unit/kel_ic_ebcom_path_add_test.cpp
    tests/unit/kel_ic_ebcom_path_rem_test.cpp
    tests/unit/kel_ic_ebcom_queue_stats_test.cpp
    tests/unit/kel_ic_pcep_multicast_test.cpp
    tests/unit/kel_ic_pcep_start_stop_test.cpp)
join_apart(unit-tests
    tests/unit/kel_ic_ebcom_path_destination_test.cpp
    tests/unit/kel_ic_pcep_stats_test.cpp)
if(KEL_TESTS STREQUAL "UNIT")
    return()
endif()

foreach(target
        proof-model socket-test softnode-engine-test softnode-test softnode-property-test kelctl-unit-tests
        kelctl-program-tests kel-trace-unit-tests kel-exporter-unit-tests)
    join_rooms(${target})
endforeach()
join_apart(socket-test tests/socket/server_test.cpp)
join_apart(softnode-property-test tests/softnode/node/traffic_simulation_test.cpp)
join_apart(proof-model tests/proof/choices.cpp tests/proof/model_qos.cpp)
join_apart(softnode-engine-test tests/softnode/node/forwarding_test.cpp)
join_apart(softnode-engine-test # their fixtures are called like what they test
    tests/softnode/node/node_test.cpp
    tests/softnode/node/pcep_table_test.cpp
    tests/softnode/node/timing_unit_test.cpp)
join_apart(softnode-engine-test tests/softnode/node/qos_graph_test.cpp tests/softnode/traffic/port_test.cpp)
join_apart(softnode-engine-test
    tests/softnode/faults/trial_test.cpp
    tests/softnode/views/snapshot_test.cpp)
join_apart(kelctl-unit-tests
    tests/kelctl/change/apply_test.cpp
    tests/kelctl/nodefile/node_rules_test.cpp
    tests/kelctl/session/undo_test.cpp
    tests/kelctl/views/node_view_test.cpp)
join_apart(kelctl-program-tests
    tests/kelctl/program/held_node_test.cpp
    tests/kelctl/program/interruption_program_test.cpp
    tests/kelctl/program/large_file_test.cpp
    tests/kelctl/program/replay_program_test.cpp
    tests/kelctl/program/terminal_session.cpp)
join_apart(kelctl-program-tests
    tests/kelctl/program/service_test.cpp
    tests/kelctl/program/traffic_commands_test.cpp)
