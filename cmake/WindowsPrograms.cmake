# Builds a small program for Windows, without the C runtime library, whose entry point is `Enter`. `result` is set to
# its path, or to nothing where clang, lld or mingw-w64's headers are missing.
find_program(WINDOWS_COMPILER clang++)
find_program(WINDOWS_LINKER ld.lld)

function(varnik_windows_program result name bits source)
  if(bits EQUAL 32)
    set(processor i686)
    set(entry _Enter)
  else()
    set(processor x86_64)
    set(entry Enter)
  endif()
  if(NOT WINDOWS_COMPILER OR NOT WINDOWS_LINKER OR NOT EXISTS /usr/${processor}-w64-mingw32/include/windows.h)
    message(STATUS "${name} is left out: clang++, lld or mingw-w64's headers are missing")
    set(${result} "" PARENT_SCOPE)
    return()
  endif()
  set(program ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${WINDOWS_COMPILER} --target=${processor}-w64-windows-gnu -std=c++20 -O2 -Wall -Wextra -Werror
            -fno-exceptions -fno-stack-protector -fuse-ld=lld -nostdlib -mwindows -s -Wl,-e,${entry}
            -o ${program} ${source} -lkernel32
    DEPENDS ${source}
    COMMENT "Building ${name}"
    VERBATIM)
  add_custom_target(${name}_program ALL DEPENDS ${program})
  set(${result} ${program} PARENT_SCOPE)
endfunction()

# They stand between Wine and the game; see src/platform/system/process/launch.h.
foreach(bits 32 64)
  varnik_windows_program(starter varnik-start${bits}.exe ${bits} ${CMAKE_SOURCE_DIR}/src/platform/starter/starter.cpp)
  if(starter)
    install(FILES ${starter} DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/varnik)
  endif()
endforeach()
