# Options of everything built in this project; nothing here reaches users of the installed package.

add_compile_options(
  -Wall -Wextra -Wpedantic
  -Wshadow -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  # Exceptions report where they were thrown: the path below the project's folder, on every machine the same.
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
  # A call inside a library to its own exported function needs no detour through the symbol table; nor when that
  # function is in another source file (the linker's half of it, below).
  -fno-semantic-interposition)

if(VEXONAMES_WERROR)
  add_compile_options(-Werror)
endif()

if(VEXONAMES_SANITIZE)
  add_compile_options(-fsanitize=${VEXONAMES_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEXONAMES_SANITIZE})
else()
  # Functions begin on a line of the processor's cache. Where they begin is else up to what stands before them, and with
  # it how fast they are: the same encoding of a text took a quarter longer from one build to the next.
  add_compile_options(-falign-functions=64)
  add_link_options(-Wl,--as-needed -Wl,--no-undefined -Wl,-Bsymbolic-functions)
endif()
