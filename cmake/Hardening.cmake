# kelvo_harden_releases(TARGET): adds hardening flags of compiler and linker to an interface library, for all build types
# that optimise. Debug builds are used with sanitizers and debuggers instead.
include(CheckCXXCompilerFlag)

function(kelvo_harden_releases target)
  set(compile -fstack-protector-strong)
  # CET (-fcf-protection) takes effect only where the start files of the C library are marked for it too, which those of
  # Debian 12 and 13 are not.
  foreach(flag IN ITEMS -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "HAS${flag}" has)
    check_cxx_compiler_flag(-Werror\ ${flag} ${has})
    if(${has})
      list(APPEND compile ${flag})
    endif()
  endforeach()
  # Undefine the macro first, because distributions define a lower level on the command line.
  list(APPEND compile -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
  set(optimises $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(${target} INTERFACE "$<${optimises}:${compile}>")
  if(NOT APPLE)
    target_link_options(${target} INTERFACE "$<${optimises}:LINKER:-z,relro,-z,now,-z,noexecstack>")
  endif()
endfunction()
