// A tree as text to compare with: kind, tag, attributes, text, children. Parents and indexes must be right.
#pragma once

#include "Zn_DOMElement.h"

#include <gtest/gtest.h>

#include <string>

// Nodes read from XML have no parent: there hasParents is false.
inline std::string DescribeTree(const Zn_DOMElemList& list, // NOLINT(misc-no-recursion): of small trees
                                const Zn_DOMElement* parent = nullptr, bool hasParents = true)
{
    std::string all;
    for (int i = 0; i < list.Count(); ++i) {
        const Zn_DOMElement& node = list[i];
        all += (i > 0 ? " " : "") + std::to_string(node.kind) + node.tag.ToUtf8();
        for (const Zn_NamedStr& attribute : node.attributes)
            all += "[" + attribute.Id().ToUtf8() + "=" + attribute.Str().ToUtf8() + "]";
        if (!node.rawAttributes.IsEmpty())
            all += "{" + node.rawAttributes.ToUtf8() + "}";
        if (!node.text.IsEmpty())
            all += "'" + node.text.ToUtf8() + "'";
        if (node.IsHaveChild())
            all += "(" + DescribeTree(node.children, hasParents ? &node : nullptr, hasParents) + ")";
        EXPECT_EQ(node.GetParentIndex(), i);
        EXPECT_EQ(node.GetParent(), parent);
    }
    return all;
}
