// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks a class or function that a host may name. All else is hidden in the shared library.
#define MC_EXPORT [[gnu::visibility("default")]]
