# What is installed and where: the two libraries, for each its headers, a pkg-config file and a CMake package; the trace
# probes; kelctl, and its service; kel-trace; kel-record; kel-exporter, and its service. The components are those of the Debian
# packages (debian/rules): who installs a file names its package.
#
# All headers lie below include/kel. Both kinds of package put that folder itself on the search path as well, for
# <platform/...> and <softnode/...>.
include(CMakePackageConfigHelpers)

# kel_search_path(TARGET [ENTRY...]): where an installed target finds the libraries that it needs, beside those of a
# vendor. The build folder is laid out like the installed tree, so the target is built with it: a path that is exchanged
# at installation is padded with empty entries, which the loader takes for the current folder.
function(kel_search_path target)
    set_target_properties(${target} PROPERTIES
        INSTALL_RPATH "${ARGN}"
        INSTALL_RPATH_USE_LINK_PATH ON
        BUILD_WITH_INSTALL_RPATH ON)
endfunction()

kel_search_path(kelctl $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
kel_search_path(kel-trace)
kel_search_path(kel-record)
kel_search_path(kel-exporter)
kel_search_path(kel-record-preload)
kel_search_path(kel-core-ic $ORIGIN)
foreach(target kel-softnode kel-trace-ic kel-trace-init kel-trace-ic-probes kel-trace-init-probes)
    kel_search_path(${target})
endforeach()

# kel_package(NAME DESCRIPTION REQUIRES): the files by which others find an installed library and its export set.
function(kel_package name description requires)
    set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    file(RELATIVE_PATH PACKAGE_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /) # so that the tree can be moved
    set(PACKAGE_NAME ${name})
    set(PACKAGE_DESCRIPTION ${description})
    set(PACKAGE_REQUIRES ${requires})
    configure_file(cmake/package.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    configure_package_config_file(cmake/package-config.cmake.in ${PROJECT_BINARY_DIR}/${name}-config.cmake
        INSTALL_DESTINATION ${folder})
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/${name}-config-version.cmake COMPATIBILITY SameMajorVersion)

    install(EXPORT ${name} NAMESPACE kel:: DESTINATION ${folder} FILE ${name}-targets.cmake COMPONENT ${name}-dev)
    install(FILES ${PROJECT_BINARY_DIR}/${name}-config.cmake ${PROJECT_BINARY_DIR}/${name}-config-version.cmake
        DESTINATION ${folder} COMPONENT ${name}-dev)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${name}-dev)
endfunction()

set(platform_package "")
if(KEL_STOOD_IN_FOR)
    set(platform_package kel-softnode)
    install(TARGETS kel-softnode EXPORT kel-softnode
        LIBRARY COMPONENT kel-softnode NAMELINK_COMPONENT kel-softnode-dev)
    install(FILES softnode/softnode.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kel/softnode COMPONENT kel-softnode-dev)
    kel_package(kel-softnode "The software accelerator: stands in for the closed libraries of a node" "")
endif()

install(TARGETS kel-core-ic kel-trace-ic kel-trace-init kel-interface kel-platform-headers EXPORT kel-core-ic
    LIBRARY COMPONENT kel-core-ic NAMELINK_COMPONENT kel-core-ic-dev)
install(TARGETS kel-trace-ic-probes kel-trace-init-probes
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/${KEL_PROBE_FOLDER} COMPONENT kel-trace-providers)
install(DIRECTORY include/kel/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kel COMPONENT kel-core-ic-dev)
install(DIRECTORY include/platform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kel COMPONENT kel-core-ic-dev
    FILES_MATCHING PATTERN *.h)
kel_package(kel-core-ic ${PROJECT_DESCRIPTION} "${platform_package}")

install(TARGETS kelctl RUNTIME COMPONENT kelctl)
install(TARGETS kel-trace RUNTIME COMPONENT kel-trace)
install(TARGETS kel-exporter RUNTIME COMPONENT kel-exporter)
install(TARGETS kel-record RUNTIME COMPONENT kel-record)
install(TARGETS kel-record-preload
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/${KEL_RECORD_FOLDER} COMPONENT kel-record)

# Manual pages and completion scripts are made in the build folders of the programs' rooms `documents`.
function(install_text program file destination name)
    install(FILES ${file} DESTINATION ${destination} RENAME ${name} COMPONENT ${program})
endfunction()
foreach(program kelctl kel-trace kel-record kel-exporter)
    set(made ${PROJECT_BINARY_DIR}/${program}/documents)
    string(REPLACE - _ function _${program})
    install_text(${program} ${made}/${program}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${program}.1)
    install_text(${program} ${made}/${program}.bash ${CMAKE_INSTALL_DATADIR}/bash-completion/completions ${program})
    install_text(${program} ${made}/${program}.zsh ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions ${function})
endforeach()
install_text(kelctl ${PROJECT_BINARY_DIR}/kelctl/documents/node.toml.5 ${CMAKE_INSTALL_MANDIR}/man5 node.toml.5)

# What systemd starts. It names the program by the prefix that is known when it is installed.
set(KEL_UNIT_FOLDER lib/systemd/system CACHE STRING "Where units of systemd are installed")
function(install_unit program unit)
    install(CODE "
        set(KEL_BINDIR \${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR})
        set(unit ${KEL_UNIT_FOLDER}/${unit})
        cmake_path(ABSOLUTE_PATH unit BASE_DIRECTORY \${CMAKE_INSTALL_PREFIX})
        message(STATUS \"Installing: \$ENV{DESTDIR}\${unit}\")
        configure_file(${PROJECT_SOURCE_DIR}/${program}/${unit}.in \$ENV{DESTDIR}\${unit} @ONLY)"
        COMPONENT ${program})
endfunction()
install_unit(kelctl kelctl@.service)
install_unit(kel-exporter kel-exporter.service)
foreach(program kelctl kel-exporter)
    install_text(${program} ${program}/${program}.sysusers lib/sysusers.d ${program}.conf)
endforeach()
