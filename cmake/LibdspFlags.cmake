# Compiler and linker settings shared by the library, tests and examples.

# Results of fixed arithmetic (recursions, "round the product, then add")
# must not change with the compiler's contraction choices: no implicit FMA.
set(LIBDSP_COMMON_FLAGS -ffp-contract=off -Wall -Wextra)
if(LIBDSP_WERROR)
  list(APPEND LIBDSP_COMMON_FLAGS -Werror)
endif()

set(LIBDSP_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)

function(libdsp_apply_flags target)
  target_compile_options(${target} PRIVATE ${LIBDSP_COMMON_FLAGS})
  if(LIBDSP_SANITIZE)
    target_compile_options(${target} PRIVATE ${LIBDSP_SANITIZE_FLAGS})
  endif()
endfunction()

function(libdsp_apply_link_flags target)
  if(LIBDSP_SANITIZE)
    target_link_options(${target} PRIVATE ${LIBDSP_SANITIZE_FLAGS})
  endif()
endfunction()
