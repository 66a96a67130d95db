# The notices that the about box shows, made from what this build really links and bundles, so that
# a new dependency cannot go without one.

# What stands in a target's link libraries, as a regular expression, and the beginning of its entry
# in NOTICE.md; an empty entry is for what needs none (our own flags, the C library).
set(ORBILENS_NOTICE_OF_LINKED
  "^Qt5::" "Qt 5"
  "^JPEG::" "libjpeg-turbo"
  "^PkgConfig::LibVlc$" "libvlc"
  "^PkgConfig::Xcb$" "libxcb"
  "^TBB::" "oneTBB"
  "^OpenMP::" "GNU OpenMP"
  "^PkgConfig::.*[Rr][Aa][Ww]" "LibRaw"
  "^PkgConfig::.*[Vv][Ii][Pp][Ss]" "libvips"
  "[Ee][Xx][Ii][Vv]2" "Exiv2"
  "[Bb]reakpad" "Breakpad"
  "^(Threads::Threads|dl|rt|pthread|m|-l.*|d3d9|dxva2|opengl32|gdi32|advapi32|user32|kernel32|version|ole32|uuid)$" "")

# Files that go into the program or beside it, relative to the source folder, and their entries.
set(ORBILENS_NOTICE_OF_BUNDLED
  "src/resources/QmlLib/themes/orvex/fonts/Barlow-*.ttf" "Barlow"
  "src/resources/QmlLib/themes/orvex/fonts/Figtree-*.ttf" "Figtree"
  "src/resources/Data/cameras.txt" "Lensfun"
  "src/resources/Data/cameras.txt" "COLMAP"
  "src/resources/Data/lensid.txt" "ExifTool")

# Libraries that `target` links directly or through libraries of ours.
function(orbilens_linked_libraries target result)
  set(pending ${target})
  set(seen)
  set(foreign)
  while(pending)
    list(POP_FRONT pending current)
    list(APPEND seen ${current})
    set(libraries)
    foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
      get_target_property(value ${current} ${property})
      if(value)
        list(APPEND libraries ${value})
      endif()
    endforeach()
    foreach(library ${libraries})
      string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" library "${library}")
      if(library MATCHES "^\\$<|^::@|^$")
        continue()
      endif()
      # Sources of others that we compile ourselves are foreign too.
      set(imported TRUE)
      if(TARGET ${library})
        get_target_property(imported ${library} IMPORTED)
        get_target_property(folder ${library} SOURCE_DIR)
        string(FIND "${folder}" "${PROJECT_SOURCE_DIR}/third_party" position)
        if(position EQUAL 0)
          set(imported TRUE)
        endif()
      endif()
      if(imported)
        list(APPEND foreign ${library})
      elseif(NOT library IN_LIST seen AND NOT library IN_LIST pending)
        list(APPEND pending ${library})
      endif()
    endforeach()
  endwhile()
  list(REMOVE_DUPLICATES foreign)
  set(${result} ${foreign} PARENT_SCOPE)
endfunction()

# The entry of NOTICE.md that begins with `name`, as one paragraph of rich text.
function(orbilens_notice_paragraph name result)
  file(STRINGS "${PROJECT_SOURCE_DIR}/NOTICE.md" rows REGEX "^\\| ")
  foreach(row ${rows})
    if(row MATCHES "^\\| +([^|]*[^| ]) +\\| +([^|]*[^| ]) +\\| +([^|]*[^| ]) +\\|$")
      set(work "${CMAKE_MATCH_1}")
      set(use "${CMAKE_MATCH_2}")
      set(licence "${CMAKE_MATCH_3}")
      string(FIND "${work}" "${name}" position)
      if(position EQUAL 0)
        foreach(text work use licence)
          string(REPLACE "&" "&amp;" ${text} "${${text}}")
          string(REPLACE "<" "&lt;" ${text} "${${text}}")
          string(REPLACE "`" "" ${text} "${${text}}")
        endforeach()
        set(${result} "<p><b>${work}</b><br>${use}<br><i>${licence}</i></p>\n" PARENT_SCOPE)
        return()
      endif()
    endif()
  endforeach()
  message(FATAL_ERROR "NOTICE.md has no entry that begins with '${name}'.")
endfunction()

# Writes the notices of the program `program` and gives them to `library` as a resource,
# ":/notices/third-party.html". Called when all libraries of the program are known.
function(orbilens_third_party_notices program library)
  set_property(DIRECTORY "${PROJECT_SOURCE_DIR}"
               APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/NOTICE.md")
  get_property(plugins GLOBAL PROPERTY ORBILENS_PLUGINS)
  set(names)
  foreach(target ${program} ${plugins})
    orbilens_linked_libraries(${target} libraries)
    foreach(linked ${libraries})
      set(known FALSE)
      set(table ${ORBILENS_NOTICE_OF_LINKED})
      while(table AND NOT known)
        list(POP_FRONT table pattern name)
        if(linked MATCHES "${pattern}")
          set(known TRUE)
          list(APPEND names "${name}")
        endif()
      endwhile()
      if(NOT known)
        message(FATAL_ERROR "${target} links ${linked}, for which no notice is known: "
                            "add it to NOTICE.md and to cmake/ThirdPartyNotices.cmake.")
      endif()
    endforeach()
  endforeach()

  set(table ${ORBILENS_NOTICE_OF_BUNDLED})
  while(table)
    list(POP_FRONT table pattern name)
    file(GLOB files CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${pattern}")
    if(files)
      list(APPEND names "${name}")
    endif()
  endwhile()

  list(REMOVE_DUPLICATES names)
  list(REMOVE_ITEM names "")
  list(SORT names CASE INSENSITIVE)
  set(text)
  foreach(name ${names})
    orbilens_notice_paragraph("${name}" paragraph)
    string(APPEND text "${paragraph}")
  endforeach()

  set(folder "${CMAKE_CURRENT_BINARY_DIR}/notices")
  file(CONFIGURE OUTPUT "${folder}/third-party.html" CONTENT "${text}" @ONLY)
  file(CONFIGURE OUTPUT "${folder}/notices.qrc" CONTENT
    "<RCC>\n    <qresource prefix=\"/notices\">\n        <file>third-party.html</file>\n    </qresource>\n</RCC>\n"
    @ONLY)
  target_sources(${library} PRIVATE "${folder}/notices.qrc")
endfunction()
