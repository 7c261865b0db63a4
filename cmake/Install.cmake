# What `cmake --install` copies, in three components: runtime, development and tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# A folder of their own, since names such as CBilinear.h could be anybody's.
set(LUMOFE_INSTALL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/LumoFESDK)
set(LUMOFE_INSTALL_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/LumoFESDK)

install(TARGETS LumoFESDK EXPORT LumoFESDKTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
    INCLUDES DESTINATION ${LUMOFE_INSTALL_HEADERS})
install(FILES ${LUMOFE_PUBLIC_HEADERS} DESTINATION ${LUMOFE_INSTALL_HEADERS} COMPONENT development)

# The CMake package. Its version file also refuses hosts of the other word size.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/LumoFESDKConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/LumoFESDKConfigVersion.cmake
    DESTINATION ${LUMOFE_INSTALL_PACKAGE} COMPONENT development)
# The library needs no other package, so the targets are the whole configuration.
install(EXPORT LumoFESDKTargets FILE LumoFESDKConfig.cmake NAMESPACE LumoFESDK::
    DESTINATION ${LUMOFE_INSTALL_PACKAGE} COMPONENT development)

# Paths in lumofesdk.pc start at the file itself, so that the installed tree can be moved.
foreach(folder LIBDIR INCLUDEDIR)
    file(RELATIVE_PATH LUMOFE_PC_${folder}
        ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_${folder}})
endforeach()
configure_file(cmake/lumofesdk.pc.in lumofesdk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lumofesdk.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
    FILES_MATCHING PATTERN *.md PATTERN *.jpg PATTERN *.svg PATTERN draw EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
    PATTERN CMakeLists.txt EXCLUDE)

if(LUMOFE_BUILD_TOOLS)
    file(RELATIVE_PATH library_from_tool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(lumofe PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_tool}")
    install(TARGETS lumofe RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    install(FILES ${PROJECT_BINARY_DIR}/lumofe.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    # Where the shells look for them.
    set(completion ${PROJECT_BINARY_DIR}/completion)
    install(FILES ${completion}/lumofe.bash RENAME lumofe
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
    install(FILES ${completion}/lumofe.zsh RENAME _lumofe
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
    install(FILES ${completion}/lumofe.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
endif()
