# Run by cpack when the packages are made: adds what a Debian package has besides its files, and packs each anew, with one date for all that is in
# it, so that the same files make the same package. The date is SOURCE_DATE_EPOCH, or that of the changelog.

find_program(DPKG_DEB dpkg-deb REQUIRED)
find_program(GZIP gzip REQUIRED)
set(debian ${CMAKE_CURRENT_LIST_DIR}/debian)

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# answer(VARIABLE COMMAND...): what the command prints.
function(answer variable)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  file(STRINGS ${debian}/changelog entry REGEX "^ -- ")
  list(GET entry 0 entry)
  string(REGEX REPLACE ".*>  " "" day "${entry}")
  answer(seconds date --utc --date=${day} +%s)
  set(ENV{SOURCE_DATE_EPOCH} ${seconds})
endif()

# add(FILE SOURCE): a copy of a file, compressed where the name says so.
function(add file source)
  get_filename_component(folder ${file} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  if(file MATCHES "\\.gz$")
    execute_process(COMMAND ${GZIP} -9 --no-name --stdout ${source} OUTPUT_FILE ${file} COMMAND_ERROR_IS_FATAL ANY)
  else()
    configure_file(${source} ${file} COPYONLY)
  endif()
  file(CHMOD ${file} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  answer(name ${DPKG_DEB} --field ${package} Package)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${name}.packed)
  file(REMOVE_RECURSE ${root})
  run(${DPKG_DEB} --raw-extract ${package} ${root})

  add(${root}/usr/share/doc/${name}/copyright ${debian}/copyright)
  add(${root}/usr/share/doc/${name}/changelog.gz ${debian}/changelog)
  if(EXISTS ${debian}/${name}.overrides)
    add(${root}/usr/share/lintian/overrides/${name} ${debian}/${name}.overrides)
  endif()
  file(GLOB pages ${root}/usr/share/man/man?/*.?)
  foreach(page IN LISTS pages)
    add(${page}.gz ${page})
    file(REMOVE ${page})
  endforeach()
  file(REMOVE ${root}/DEBIAN/postinst ${root}/DEBIAN/postrm)  # they call ldconfig, which the trigger of the libraries does

  file(GLOB_RECURSE files RELATIVE ${root} ${root}/usr/*)
  list(SORT files)
  set(sums "")
  foreach(file IN LISTS files)
    if(NOT IS_SYMLINK ${root}/${file})
      file(MD5 ${root}/${file} sum)
      string(APPEND sums "${sum}  ${file}\n")
    endif()
  endforeach()
  file(WRITE ${root}/DEBIAN/md5sums "${sums}")

  run(find ${root} -type d -exec chmod 0755 {} +)
  run(find ${root} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +)
  run(${DPKG_DEB} --root-owner-group --build ${root} ${package})
  file(REMOVE_RECURSE ${root})
endforeach()
