# Flags that every target of ours is compiled with.
add_library(varnik_compiler INTERFACE)
target_compile_options(varnik_compiler INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(VARNIK_WERROR)
  target_compile_options(varnik_compiler INTERFACE -Werror)
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
  target_compile_options(varnik_compiler INTERFACE -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection
                                                   -fcf-protection)
  target_link_options(varnik_compiler INTERFACE -Wl,-z,relro,-z,now)
endif()
