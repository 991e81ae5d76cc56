// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "errors.h"

#include <string>

/// The message of the InputError that the call ends with, or "accepted".
template <class Call>
std::string RefusalOf(const Call& call) {
  try {
    call();
  } catch (const mcfit::InputError& error) {
    return error.what();
  }
  return "accepted";
}
