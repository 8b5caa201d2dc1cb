# Warnings for the project's own code only; consumers of the library never inherit them.
add_library(tvrx_warnings INTERFACE)
target_compile_options(tvrx_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor>
  $<$<BOOL:${TVRX_WERROR}>:-Werror>)

if(TVRX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
