# Where things go at "cmake --install": programs find their modules at ../lib/varnholt.
include(GNUInstallDirs)

install(TARGETS varnholt RUNTIME)
get_target_property(vh_modules modules MANUALLY_ADDED_DEPENDENCIES)
install(TARGETS ${vh_modules} LIBRARY DESTINATION lib/varnholt)
install(FILES resources/systemd/varnholt.service DESTINATION lib/systemd/user)
install(CODE "execute_process(COMMAND $<TARGET_FILE:varnholt> completions bash
    OUTPUT_FILE ${CMAKE_BINARY_DIR}/completions.bash COMMAND_ERROR_IS_FATAL ANY)")
install(FILES ${CMAKE_BINARY_DIR}/completions.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME varnholt)

# The root service. Only under /usr the system looks for what it needs; elsewhere "varnholt helper register" brings it
# there.
install(TARGETS varnholt-helper RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR})
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(program ${CMAKE_INSTALL_FULL_LIBEXECDIR}/varnholt-helper)
    foreach(file varnholt-helper.service=lib/systemd/system
                 com.varnholt.helper.service=share/dbus-1/system-services
                 com.varnholt.helper.conf=share/dbus-1/system.d
                 com.varnholt.helper.policy=share/polkit-1/actions)
        string(REGEX MATCH "^(.*)=(.*)$" file ${file})
        configure_file(resources/helper/${CMAKE_MATCH_1} install/${CMAKE_MATCH_1} @ONLY)
        install(FILES ${CMAKE_BINARY_DIR}/install/${CMAKE_MATCH_1} DESTINATION ${CMAKE_MATCH_2})
    endforeach()
endif()
if(VH_UI)
    install(TARGETS varnholt-app RUNTIME)
    install(FILES resources/desktop/varnholt.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES resources/icons/varnholt.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
