#pragma once

namespace GenApi_3_0_ORVANE {

/// A node whose formula can be checked before it is needed.
struct IFormulaNode {
    /// LogicalErrorException when the formula doesn't parse.
    virtual void CheckExpressions() = 0;
    virtual ~IFormulaNode() = default;
};

}  // namespace GenApi_3_0_ORVANE
