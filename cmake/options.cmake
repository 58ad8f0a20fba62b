# What holds for all of our own code.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

add_library(kel_options INTERFACE)
target_compile_options(
    kel_options
    INTERFACE -Wall
              -Wextra
              -Wconversion
              -Wshadow
              -Werror
              # Angles and curves are computed in the order written, each product rounded by itself.
              -ffp-contract=off)
if(KEL_SANITIZE)
    set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(kel_options INTERFACE ${sanitize})
    target_link_options(kel_options INTERFACE ${sanitize})
endif()
