# Compilations are cached where ccache is installed, unless another launcher is named.
find_program(CCACHE ccache)
if(CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Flags that every target of ours is compiled with, varnik_compiler's with the sanitizers of the preset.
add_library(varnik_flags INTERFACE)
add_library(varnik_compiler INTERFACE)
target_link_libraries(varnik_compiler INTERFACE varnik_flags)
target_compile_options(varnik_flags INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # With optimisation, these versions take `"text" + string` for a copy onto itself.
  target_compile_options(varnik_flags INTERFACE -Wno-restrict)
endif()
if(VARNIK_WERROR)
  target_compile_options(varnik_flags INTERFACE -Werror)
endif()
if(VARNIK_SANITIZE)
  # Frames stay readable in reports; an undefined operation ends the program instead of only being printed.
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(varnik_compiler INTERFACE ${sanitizers})
  target_link_options(varnik_compiler INTERFACE ${sanitizers})
endif()
if(VARNIK_FUZZ)
  set(sanitizers -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(varnik_compiler INTERFACE ${sanitizers})
  target_link_options(varnik_compiler INTERFACE ${sanitizers})
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # What Debian builds its packages with: files of strangers are read all day.
  target_compile_options(varnik_flags INTERFACE -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection
                                                -fcf-protection)
  target_link_options(varnik_flags INTERFACE -Wl,-z,relro,-z,now)
endif()
