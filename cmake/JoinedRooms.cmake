# Has each room of the largest targets compiled as one file. What is checked for memory errors takes a third to two fifths of
# the processor time that way: most of it goes into templates that nearly every file of a room instantiates again.
function(join_rooms target)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH folder)
        cmake_path(GET folder FILENAME room)
        set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${room})
    endforeach()
    # A parameter of one file may be called like a function of another.
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ON
        UNITY_BUILD_MODE GROUP
        UNITY_BUILD_CODE_BEFORE_INCLUDE "#pragma clang diagnostic ignored \"-Wshadow\"")
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
    kelctl/change/held.cpp
    kelctl/commands/commands_node.cpp
    kelctl/commands/commands_pcep.cpp
    kelctl/commands/commands_statistics.cpp
    kelctl/documents/node_manual.cpp
    kelctl/jobs/take_down.cpp
    kelctl/language/help.cpp)
