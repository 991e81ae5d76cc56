// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mcparsexml/xercestypes.h"

namespace MCComXPrsUtil {
namespace detail {

/// How deep elements may stand in a document that Xerces is to copy, import or write: it does so by
/// recursion, which 60,000 levels and more drive past the end of an 8 MiB stack.
inline constexpr int kMaxDepth = 10000;

/// Whether elements stand more than `limit` deep in the tree of `node`, itself counted if it is an
/// element: a document whose root has one child is 2 deep. References to entities count as the
/// elements do. Without recursion, in time linear in the tree.
bool IsDeeperThan(const xercesc::DOMNode& node, int limit);

}  // namespace detail
}  // namespace MCComXPrsUtil
