# SPDX-License-Identifier: Apache-2.0
# Compiler options that every target of the project shares, as one interface target.

add_library(mcstat_options INTERFACE)
target_compile_features(mcstat_options INTERFACE cxx_std_17)
target_compile_options(
  mcstat_options
  INTERFACE
    # Results must not depend on the machine: no contraction of a*b+c behind our back.
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${MCSTAT_WARNINGS_AS_ERRORS}>:-Werror>)

if(MCSTAT_SANITIZE)
  target_compile_options(
    mcstat_options INTERFACE -fsanitize=${MCSTAT_SANITIZE} -fno-sanitize-recover=all
                             -fno-omit-frame-pointer)
  target_link_options(mcstat_options INTERFACE -fsanitize=${MCSTAT_SANITIZE})
endif()

if(MCSTAT_COVERAGE)
  target_compile_options(mcstat_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(mcstat_options INTERFACE --coverage)
endif()
