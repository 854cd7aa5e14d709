#pragma once
/// The rows of the grammar.

#include <span>
#include <string>

#include "grammar/Grammar.h"

namespace GenApi_3_0_ORVANE {

std::span<const AttributeRow> AttributesOf(Attributes kind);
std::span<const ElementType> AllElementTypes();
std::span<const ElementRow> AllElementRows();
/// Replaces the marks "@common" and so on by what they stand for.
std::string ExpandContent(std::string_view content);
/// The row of every element that has content of its own.
const ElementRow& NestedRow();

}  // namespace GenApi_3_0_ORVANE
