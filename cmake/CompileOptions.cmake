# Compiler options shared by everything in the tree.

# Same bytes from 32- and 64-bit builds, GCC and Clang, at any optimisation level: SSE arithmetic and
# no contraction of a * b + c. Never add -ffast-math or -march here.
add_library(lumofe_numeric INTERFACE)
target_compile_options(lumofe_numeric INTERFACE -msse2 -mfpmath=sse -ffp-contract=off)

add_library(lumofe_warnings INTERFACE)
target_compile_options(lumofe_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wfloat-conversion
    -Wdouble-promotion -Wcast-align -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    $<$<BOOL:${LUMOFE_WERROR}>:-Werror>)

# For large code whose speed does not matter.
set(LUMOFE_QUICK_TO_COMPILE $<$<CONFIG:Release>:-O1> $<$<BOOL:${LUMOFE_SANITIZE}>:-O0>)

# Deliveries name no folder of the machine that built them.
add_compile_options($<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)

if(LUMOFE_SANITIZE)
    set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_options(${sanitizers})
    add_link_options(${sanitizers})
endif()

if(LUMOFE_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread)
    add_link_options(-fsanitize=thread)
endif()

if(LUMOFE_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()
