# What `cmake --install` puts where. The programs look for the shipped files in ../share/varnik and for the Windows
# programs and the decoder of pictures in ../libexec/varnik as seen from themselves, so that an installed tree may be
# moved as a whole.
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/varnik)

install(TARGETS varnik varnik-cli DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS varnik-picture DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/varnik)
install(DIRECTORY data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/varnik)
install(FILES packaging/varnik.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/example.varnik.varnik.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/copyright DESTINATION ${doc_dir})
install(FILES packaging/lintian-overrides RENAME varnik DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides)
install(FILES completion/varnik-cli.bash RENAME varnik-cli
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
# Debian's zsh looks into vendor-completions below /usr, and into site-functions below /usr/local.
foreach(folder vendor-completions site-functions)
  install(FILES completion/_varnik-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${folder})
endforeach()
install(FILES completion/varnik-cli.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

# Without a time stamp: the same file gives the same bytes.
find_program(GZIP gzip REQUIRED)
function(varnik_compressed source name destination)
  set(packed ${CMAKE_BINARY_DIR}/packed/${name}.gz)
  add_custom_command(
    OUTPUT ${packed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/packed
    COMMAND ${GZIP} -9nc ${CMAKE_SOURCE_DIR}/${source} > ${packed}
    DEPENDS ${source}
    VERBATIM)
  install(FILES ${packed} DESTINATION ${destination})
  set_property(GLOBAL APPEND PROPERTY varnik_packed ${packed})
endfunction()

varnik_compressed(packaging/changelog changelog ${doc_dir})
foreach(page varnik-cli.1 varnik.cmd.5 bzm.5 varnik.6)
  string(REGEX MATCH ".$" section ${page})
  varnik_compressed(man/${page} ${page} ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
get_property(packed GLOBAL PROPERTY varnik_packed)

# The theme's icons: the drawing itself, and its common sizes for those who draw none.
set(drawing ${CMAKE_SOURCE_DIR}/artwork/mark-amber.svg)
set(icon_dir ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${drawing} RENAME varnik.svg DESTINATION ${icon_dir}/scalable/apps)
find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(STATUS "Icons of fixed sizes are left out: rsvg-convert is missing")
endif()
foreach(size 16 22 24 32 48 64 128 256)
  if(RSVG_CONVERT)
    set(icon ${CMAKE_BINARY_DIR}/packed/${size}.png)
    add_custom_command(
      OUTPUT ${icon}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/packed
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} ${drawing} -o ${icon}
      DEPENDS ${drawing}
      VERBATIM)
    install(FILES ${icon} RENAME varnik.png DESTINATION ${icon_dir}/${size}x${size}/apps)
    list(APPEND packed ${icon})
  endif()
endforeach()
add_custom_target(varnik_packed ALL DEPENDS ${packed})

# The Debian package: `cpack -G DEB --config build/release/CPackConfig.cmake`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnik)
set(CPACK_PACKAGE_CONTACT "Varnik maintainers <maintainers@varnik.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mod manager and launcher for Battlezone II")
set(CPACK_PACKAGE_DESCRIPTION
"Varnik keeps a list of your installs of the game, shows the mods and maps
that work with the selected one, and builds the game's command line. A launch
activates the chosen mod, runs the game, and puts everything back. Should
Varnik or the machine die meanwhile, the next start puts everything back.
.
The game itself is not part of this package.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS wine)
include(CPack)
