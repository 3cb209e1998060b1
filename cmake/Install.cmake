# Where things go at "cmake --install": programs find their modules at ../lib/varnholt.
include(GNUInstallDirs)

install(TARGETS varnholt RUNTIME)
get_target_property(vh_modules modules MANUALLY_ADDED_DEPENDENCIES)
install(TARGETS ${vh_modules} LIBRARY DESTINATION lib/varnholt)
install(FILES resources/systemd/varnholt.service DESTINATION lib/systemd/user)
if(VH_UI)
    install(TARGETS varnholt-app RUNTIME)
    install(FILES resources/desktop/varnholt.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES resources/icons/varnholt.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
