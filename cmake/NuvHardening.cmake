# SPDX-License-Identifier: MIT
# What makes mistakes and attacks harder to use: the options that the OpenSSF's guide to compiler
# options names, as far as the compiler at hand has them. tests/library/check-hardening looks for
# their traces in what was built, docs/hardening.md says what they cost and which were left out.
#
# The options go to nuv_options, so they reach the library, the programs and the tests alike.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

# Programs are independent of their position: without this only their code is, not their linking.
check_pie_supported(OUTPUT_VARIABLE nuv_pie_trouble LANGUAGES CXX)

# nuv_add_if_known(FLAG...): the compiler options of the list that the compiler knows.
function(nuv_add_if_known)
    foreach(flag IN LISTS ARGN)
        string(MAKE_C_IDENTIFIER "NUV_HAVE${flag}" known)
        check_cxx_compiler_flag(${flag} ${known})
        if(${known})
            target_compile_options(nuv_options INTERFACE ${flag})
        endif()
    endforeach()
endfunction()

# nuv_link_if_known(FLAG...): the same for options of the linker, which says what it ignores.
function(nuv_link_if_known)
    foreach(flag IN LISTS ARGN)
        string(MAKE_C_IDENTIFIER "NUV_HAVE_LINKER${flag}" known)
        set(CMAKE_REQUIRED_LINK_OPTIONS "-Wl,--fatal-warnings,${flag}")
        check_cxx_source_compiles("int main() { return 0; }" ${known})
        if(${known})
            target_link_options(nuv_options INTERFACE "-Wl,${flag}")
        endif()
    endforeach()
endfunction()

# Calls of the C library whose target's size is known are checked against it, which needs optimisation.
# Level 3 knows more of the sizes, such as what is left of a buffer; an older C library warns that it
# has level 2 only. The writer in json/ has level 2: it copies digits two at a time, in one instruction
# that level 3 makes a call, and writing integers then costs 1.8 times as much.
function(nuv_fortify)
    set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
    check_cxx_source_compiles("#include <cstring>\nint main() { return 0; }" NUV_HAVE_FORTIFY_3)
    set(level 2)
    if(NUV_HAVE_FORTIFY_3)
        set(level $<IF:$<STREQUAL:$<TARGET_PROPERTY:NAME>,nuv_json>,2,3>)
    endif()
    target_compile_options(nuv_options INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=${level}>)
endfunction()

nuv_add_if_known(-Wformat=2 -Wimplicit-fallthrough -Wtrampolines -Wbidi-chars=any -Wdate-time)

# Only what is needed is loaded. In front of the targets' own options, which may say otherwise.
add_link_options(LINKER:--as-needed)

# What is relocated, the table of addresses included, is read-only once the library is loaded. No
# "-z nodlopen": launchers load the library themselves.
nuv_link_if_known(-z,relro -z,now -z,noexecstack)

# The sanitizers watch the same things, and see more of them where nothing is in between.
if(NUV_SANITIZERS)
    return()
endif()

nuv_fortify()
target_compile_definitions(nuv_options INTERFACE _GLIBCXX_ASSERTIONS)
nuv_add_if_known(
    -fstack-protector-strong
    -fstack-clash-protection
    # A test for null, and one for an overflow, stays where the compiler could conclude from other
    # code that it cannot hold.
    -fno-delete-null-pointer-checks
    -fno-strict-overflow
    # What a mistake leaves without a value is 0 and not what the stack held before.
    -ftrivial-auto-var-init=zero)

# Jumps land only where they may, and returns go where they came from. Each option is known to the
# compilers for its processor only. The mark for the shadow stack needs all objects to carry it, and
# the C library's start files may not, which have nothing to do with it.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    nuv_add_if_known(-fcf-protection=full)
    nuv_link_if_known(-z,shstk)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    nuv_add_if_known(-mbranch-protection=standard)
endif()
