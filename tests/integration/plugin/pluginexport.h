// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Found by its name in the shared object.
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
