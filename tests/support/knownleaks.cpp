// SPDX-License-Identifier: Apache-2.0
//
// What the leak detector shall say nothing of: the C library loses the list of folders that it
// makes of LOCPATH whenever a locale is set. Nor does it tell what it passed over, which would
// stand among what a process says at its end.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options();

const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep\n";
}

const char* __lsan_default_options() {
  return "print_suppressions=0";
}
