# Assembling a theme in the build tree: its written files are copied, its
# pictures are drawn by orvacat-themepainter, and the folder is installed as
# it stands, so that installing it installs the theme and nothing else.

# orvacat_copy_theme_files(<outputs variable> <theme folder> <source folder> <glob>...)
# copies the files the globs find below <source folder> into <theme folder>,
# keeping their relative paths, and appends the copies to <outputs variable>.
function(orvacat_copy_theme_files outputs theme_dir source_dir)
    set(globs)
    foreach(glob IN LISTS ARGN)
        list(APPEND globs ${source_dir}/${glob})
    endforeach()
    file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${source_dir} ${globs})
    set(copies ${${outputs}})
    foreach(file IN LISTS files)
        add_custom_command(
            OUTPUT ${theme_dir}/${file}
            COMMAND ${CMAKE_COMMAND} -E copy ${source_dir}/${file} ${theme_dir}/${file}
            DEPENDS ${source_dir}/${file}
            COMMENT "Copying theme file ${file}"
            VERBATIM)
        list(APPEND copies ${theme_dir}/${file})
    endforeach()
    set(${outputs} ${copies} PARENT_SCOPE)
endfunction()

# orvacat_add_theme(<target> <theme folder> <palette> <copied file>...)
# draws the pictures of <palette> (light or dark) into <theme folder>, builds
# them and the copies with <target>, and installs the folder under the name
# it has in the build tree.
function(orvacat_add_theme target theme_dir palette)
    get_filename_component(name ${theme_dir} NAME)
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/images.stamp)
    add_custom_command(
        OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen $<TARGET_FILE:orvacat-themepainter> ${theme_dir} ${palette}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS orvacat-themepainter
        COMMENT "Drawing the ${name} theme's images"
        VERBATIM)
    add_custom_target(${target} ALL DEPENDS ${ARGN} ${stamp})
    install(DIRECTORY ${theme_dir}/ DESTINATION ${ORVACAT_INSTALL_DATADIR}/themes/${name})
endfunction()
