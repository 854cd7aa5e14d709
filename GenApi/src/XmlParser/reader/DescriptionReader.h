#pragma once
/// Walks a description's XML against the grammar.

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "builder/NodeBuilder.h"

struct XML_ParserStruct;

namespace GenApi_3_0_ORVANE {

/// What broke the rules of the schema, and where.
struct SchemaError {
    enum Code : int {
        None = 0,
        ExpectedAttribute = 1,
        UnexpectedAttribute = 2,
        ExpectedElement = 3,
        UnexpectedElement = 4,
        UnexpectedCharacters = 5
    };

    Code code = None;
    std::string text;
    unsigned long line = 0;
    unsigned long column = 0;
};

/// One run over a document in one of the schema's versions. The tokeniser is C, which no
/// exception may cross: what goes wrong is kept here and stops it.
class CDescriptionReader {
public:
    /// @param nameSpace  of all elements of the schema
    CDescriptionReader(CNodeDataMap& map, bool suppressStrings, std::string_view nameSpace);

    /// Returns the error of the schema or the tokeniser, if any.
    /// @throws what the builder has thrown, with line and column
    std::optional<SchemaError> Read(std::string_view document);

private:
    /// An element that is open.
    struct Frame {
        const CElementGrammar* grammar = nullptr;  ///< null for one that holds a text
        const ElementRow* row = nullptr;
        CContentModel::State state = CContentModel::kBegin;
        OpenNode open;
        std::string text;
        const AttributeRow* attributeRow = nullptr;  ///< of the attribute, if any
        std::string attribute;
    };

    static void OnStart(void* self, const char* name, const char** attributes);
    static void OnEnd(void* self, const char* name);
    static void OnText(void* self, const char* text, int length);

    template <class Action>
    void Guard(const Action& action);
    void Start(std::string_view qualifiedName, const char** attributes);
    void End(std::string_view qualifiedName);
    void Characters(std::string_view text);
    void StartRoot(std::string_view name, const char** attributes);
    void StartChild(std::string_view name, const char** attributes);
    void StartInExtension(std::string_view name, const char** attributes);
    void Push(const CElementGrammar* grammar, const ElementRow* row, std::string_view name,
              const char** attributes);
    void TakeAttributes(Frame& frame, Attributes kind, const char** attributes);
    void TakeAttribute(Frame& frame, Attributes kind, const AttributeRow& row,
                       std::string_view value);
    [[noreturn]] void Fail(SchemaError::Code code) const;
    void Stop();
    bool IsOurs(std::string_view qualifiedName, std::string_view& local) const;
    SchemaError ErrorHere(std::string text) const;
    [[noreturn]] void RethrowBuilderFailure() const;

    CNodeBuilder m_Builder;
    std::string m_NameSpace;
    XML_ParserStruct* m_pParser = nullptr;
    /// Kept from one element to the next, so that their texts keep memory.
    std::vector<Frame> m_Frames;
    size_t m_Depth = 0;
    size_t m_ExtensionDepth = 0;
    std::optional<SchemaError> m_Error;
    std::exception_ptr m_Failure;
    unsigned long m_FailureLine = 0;
    unsigned long m_FailureColumn = 0;
};

}  // namespace GenApi_3_0_ORVANE
