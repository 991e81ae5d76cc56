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
    $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>
    $<$<BOOL:${MCSTAT_WARNINGS_AS_ERRORS}>:-Werror>)

if(MCSTAT_SANITIZE)
  # Code of tests itself isn't watched for undefined behaviour, which would take a third of the
  # time that it takes to build; all that they call is.
  string(REGEX REPLACE "undefined,?|float-cast-overflow,?" "" of_tests "${MCSTAT_SANITIZE}")
  string(REGEX REPLACE ",$" "" of_tests "${of_tests}")
  string(REPLACE "," "$<COMMA>" of_tests "${of_tests}")
  string(REPLACE "," "$<COMMA>" of_all "${MCSTAT_SANITIZE}")
  set(is_test $<BOOL:$<TARGET_PROPERTY:MCSTAT_IS_TEST>>)
  target_compile_options(
    mcstat_options INTERFACE $<$<NOT:${is_test}>:-fsanitize=${of_all}>
                             $<$<AND:${is_test},$<BOOL:${of_tests}>>:-fsanitize=${of_tests}>
                             -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(mcstat_options INTERFACE -fsanitize=${MCSTAT_SANITIZE})
endif()

if(MCSTAT_COVERAGE)
  target_compile_options(mcstat_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(mcstat_options INTERFACE --coverage)
endif()
