// SPDX-License-Identifier: Apache-2.0
#include "mcparsexml/detail/documentdepth.h"

#include <xercesc/dom/DOMNode.hpp>

namespace MCComXPrsUtil {
namespace detail {

namespace {

using xercesc::DOMNode;

int LevelsOf(const DOMNode& node) {
  const DOMNode::NodeType type = node.getNodeType();
  return type == DOMNode::ELEMENT_NODE || type == DOMNode::ENTITY_REFERENCE_NODE ? 1 : 0;
}

}  // namespace

bool IsDeeperThan(const DOMNode& root, int limit) {
  const DOMNode* node = &root;
  int depth = LevelsOf(root);  // of `node`, where it stands
  while (depth <= limit) {
    const DOMNode* next = node->getFirstChild();
    // Without children the walk goes on beside the node, or beside the nearest node above it.
    while (next == nullptr) {
      if (node == &root) return false;
      depth -= LevelsOf(*node);
      next = node->getNextSibling();
      if (next == nullptr) node = node->getParentNode();
    }
    node = next;
    depth += LevelsOf(*node);
  }
  return true;
}

}  // namespace detail
}  // namespace MCComXPrsUtil
