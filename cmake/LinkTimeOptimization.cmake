# kelvo_support_lto(TARGET): lets whatever links the interface library be built with g++'s link-time optimization, when it
# is asked for by CMAKE_INTERPROCEDURAL_OPTIMIZATION or by -flto in CMAKE_CXX_FLAGS.
include(CheckCXXCompilerFlag)

function(kelvo_support_lto target)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU
     OR NOT (CMAKE_INTERPROCEDURAL_OPTIMIZATION OR CMAKE_CXX_FLAGS MATCHES "-flto"))
    return()
  endif()
  # When it links a program, g++ turns -fPIC into -fPIE. The program then has its own copies of Qt's data, such as
  # QCoreApplication::self, while the libraries of Qt use the originals.
  check_cxx_compiler_flag(-mno-direct-extern-access HAS_mno_direct_extern_access)
  if(HAS_mno_direct_extern_access)
    target_compile_options(${target} INTERFACE -mno-direct-extern-access)
    target_link_options(${target} INTERFACE -mno-direct-extern-access)
  endif()
  # With g++ 12.2 a temporary that a constructor passes by value loses its initialization (tst_settingsview crashes in the
  # constructor of Stores). Probably a defect of the compiler: the test passes without this pass, at -O1, and under the
  # sanitizers.
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} INTERFACE -fno-ipa-cp)
  endif()
endfunction()
