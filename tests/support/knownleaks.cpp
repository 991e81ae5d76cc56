// SPDX-License-Identifier: Apache-2.0
//
// What the leak detector shall say nothing of: the C library loses the list of folders that it
// makes of LOCPATH whenever a locale is set.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep\n";
}
