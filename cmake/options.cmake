# What holds for all of our own code.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)
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
              # gcc 12 finds overlaps in "text" + string that there are not.
              $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
              # Angles and curves are computed in the order written, each product rounded by itself.
              -ffp-contract=off)
if(KEL_SANITIZE OR KEL_FUZZ)
    set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(KEL_FUZZ)
        list(APPEND sanitize -fsanitize=fuzzer-no-link)
        target_compile_definitions(kel_options INTERFACE FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
    endif()
    if(KEL_SANITIZE AND KEL_QT)
        # It asks a pipe whether an address can be read, and where descriptors have run out finds every object wrong.
        list(APPEND sanitize -fno-sanitize=vptr)
    endif()
    target_compile_options(kel_options INTERFACE ${sanitize})
    target_link_options(kel_options INTERFACE ${sanitize})
endif()
