# Warnings are errors. The shipped build is hardened.
add_library(kova_compiler INTERFACE)
target_compile_options(kova_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# False warnings about overlapping parts of concatenated strings (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kova_compiler INTERFACE -Wno-restrict)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  set(control_flow -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
  set(control_flow -mbranch-protection=standard)
endif()
if(KOVA_SANITIZE)
  target_compile_options(kova_compiler INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kova_compiler INTERFACE -fsanitize=address,undefined)
else()
  target_compile_options(kova_compiler INTERFACE
    -fstack-protector-strong ${control_flow}
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  if(WIN32)
    # -fstack-clash-protection crashes this compiler (GCC bug 90458), and on Windows every page of
    # the stack is touched anyway.
    target_link_options(kova_compiler INTERFACE
      -static -fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    target_compile_options(kova_compiler INTERFACE -fstack-clash-protection)
    target_link_options(kova_compiler INTERFACE -Wl,-z,relro,-z,now)
  endif()
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
