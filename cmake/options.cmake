# The compiler options that every target of the project shares.
add_library(mact_options INTERFACE)
target_compile_features(mact_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

if(MSVC)
  target_compile_options(mact_options INTERFACE /W4 /permissive- /utf-8 /fp:precise
    $<$<BOOL:${MACT_WARNINGS_AS_ERRORS}>:/WX>)
  target_compile_definitions(mact_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
else()
  # Without contraction into fused multiply-adds, every platform prints the same digits.
  target_compile_options(mact_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -ffp-contract=off $<$<BOOL:${MACT_WARNINGS_AS_ERRORS}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 wrongly sees overlapping copies in std::string's operator+ (GCC bug 105651).
    target_compile_options(mact_options INTERFACE -Wno-restrict)
  endif()
  if(MINGW)
    target_compile_definitions(mact_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
  endif()
endif()

if(MACT_SANITIZERS)
  target_compile_options(mact_options INTERFACE -fsanitize=${MACT_SANITIZERS} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(mact_options INTERFACE -fsanitize=${MACT_SANITIZERS})
endif()
