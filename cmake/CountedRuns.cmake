# With KEL_COUNT_RUNS, the folders from here on count what is run of them, and the programs that link them take the
# counting along. All processes of a build count into the files of its folder "runs", while they run: what a killed one
# did is there, too. scripts/coverage reads them. It takes no time to compile, and a seventh more of the tests' processor
# time.
set(flags_without_counting "${CMAKE_CXX_FLAGS}")
if(KEL_COUNT_RUNS)
    string(APPEND CMAKE_CXX_FLAGS
        " -fprofile-instr-generate=${PROJECT_BINARY_DIR}/runs/%m%c.profraw -mllvm -runtime-counter-relocation"
        " -fcoverage-mapping -fprofile-list=${CMAKE_CURRENT_LIST_DIR}/counted_sources.txt")
    add_link_options(-fprofile-instr-generate -Wno-unused-command-line-argument) # the flags above are for compiling
    # Runs of what is linked anew do not fit those before.
    set_property(GLOBAL PROPERTY RULE_LAUNCH_LINK "${CMAKE_CURRENT_LIST_DIR}/without_runs ${PROJECT_BINARY_DIR}/runs")
endif()
