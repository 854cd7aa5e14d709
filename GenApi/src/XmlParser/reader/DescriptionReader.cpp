// Walks the XML of a description and holds each element against the grammar. The tokeniser is a C
// library, which no exception may cross: what goes wrong is kept, stops the tokeniser, and is
// thrown after it has returned.

#include "reader/DescriptionReader.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <span>

#include "Base/GCException.h"
#include "grammar/GrammarTable.h"
#include "nodes/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

namespace {

using GenICam_3_0_ORVANE::RuntimeException;

/// Joins a name space and a name in what expat reports. No XML name may contain it.
constexpr char kSeparator = '|';
constexpr const char* kTooDeep = "elements are nested deeper than 200 levels";

const char* TextOf(SchemaError::Code code) {
    switch (code) {
        case SchemaError::ExpectedAttribute:
            return "expected attribute not encountered";
        case SchemaError::UnexpectedAttribute:
            return "unexpected attribute encountered";
        case SchemaError::ExpectedElement:
            return "expected element not encountered";
        case SchemaError::UnexpectedElement:
            return "unexpected element encountered";
        default:
            return "unexpected characters encountered";
    }
}

std::string_view LocalName(std::string_view qualifiedName) {
    return qualifiedName.substr(qualifiedName.rfind(kSeparator) + 1);
}

/// Attributes without a prefix belong to their element.
bool IsQualified(std::string_view name) {
    return name.find(kSeparator) != std::string_view::npos;
}

/// A builder's failure leaves Read as an exception, and expat's memory must go with it.
struct FreeParser {
    void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

// Since 2.9.0 expat has functions of other names that count in 64 bits.
#if XML_MAJOR_VERSION > 2 || XML_MINOR_VERSION >= 9
size_t LineOf(XML_Parser parser) {
    return XML_GetCurrentLineNumber64(parser);
}
size_t ColumnOf(XML_Parser parser) {
    return XML_GetCurrentColumnNumber64(parser);
}
#else
size_t LineOf(XML_Parser parser) {
    return XML_GetCurrentLineNumber(parser);
}
size_t ColumnOf(XML_Parser parser) {
    return XML_GetCurrentColumnNumber(parser);
}
#endif

}  // namespace

/// All frames exist from the start, so that their texts keep memory from one element to the next.
CDescriptionReader::CDescriptionReader(CNodeDataMap& map, bool suppressStrings,
                                       std::string_view nameSpace)
    : m_Builder(map, suppressStrings), m_NameSpace(nameSpace), m_Frames(kMaxElementDepth) {}

/// The tokeniser counts in int, so a large document goes to it in parts.
std::optional<SchemaError> CDescriptionReader::Read(std::string_view document) {
    const std::unique_ptr<XML_ParserStruct, FreeParser> parser(
        XML_ParserCreateNS(nullptr, kSeparator));
    if (!parser) {
        GenICam_3_0_ORVANE::ThrowBadAlloc(__FILE__, __LINE__);
    }
    m_pParser = parser.get();
    XML_SetUserData(m_pParser, this);
    XML_SetElementHandler(m_pParser, &OnStart, &OnEnd);
    XML_SetCharacterDataHandler(m_pParser, &OnText);
    XML_Status status = XML_STATUS_OK;
    // expat takes its length as an int and adds what it still holds of the piece before;
    // half the range leaves room for that.
    do {
        const size_t length = std::min<size_t>(document.size(), INT_MAX / 2);
        const bool isLast = length == document.size();
        status = XML_Parse(m_pParser, document.data(), static_cast<int>(length), isLast ? 1 : 0);
        document.remove_prefix(length);
    } while (status == XML_STATUS_OK && !document.empty());
    if (status != XML_STATUS_OK) {
        // Whatever stopped the parse, the map must not keep an open element.
        m_Builder.Abandon();
    }
    if (m_Failure) {
        RethrowBuilderFailure();
    }
    if (!m_Error && status != XML_STATUS_OK) {
        // Our own errors stop expat, which then reports an error, too. Only without one
        // of ours is the document not well-formed.
        m_Error = ErrorHere(XML_ErrorString(XML_GetErrorCode(m_pParser)));
    }
    return m_Error;
}

SchemaError CDescriptionReader::ErrorHere(std::string text) const {
    return {SchemaError::None, std::move(text), LineOf(m_pParser), ColumnOf(m_pParser)};
}

/// The place of the failure in the document is what its author needs; the place in the source is
/// kept for us.
void CDescriptionReader::RethrowBuilderFailure() const {
    try {
        std::rethrow_exception(m_Failure);
    } catch (const RuntimeException& error) {
        throw GenICam_3_0_ORVANE::ExceptionReporter<RuntimeException>(
            error.GetSourceFileName(), error.GetSourceLine(), "RuntimeException")
            .Report("XML Parse error at line %d and column %d, %s", static_cast<int>(m_FailureLine),
                    static_cast<int>(m_FailureColumn), error.GetDescription());
    }
}

/// For good: nothing that follows can be understood any more.
void CDescriptionReader::Stop() {
    XML_StopParser(m_pParser, XML_FALSE);
}

void CDescriptionReader::Fail(SchemaError::Code code) const {
    SchemaError error = ErrorHere(TextOf(code));
    error.code = code;
    throw error;
}

/// Around every call of the tokeniser. It may still call a few times after it was told to stop.
template <class Action>
void CDescriptionReader::Guard(const Action& action) {
    if (m_Error || m_Failure) {
        return;
    }
    try {
        action();
        return;
    } catch (const SchemaError& error) {
        m_Error = error;
    } catch (const ValueError& error) {
        m_Error = ErrorHere(error.text);
    } catch (...) {
        m_Failure = std::current_exception();
        m_FailureLine = LineOf(m_pParser);
        m_FailureColumn = ColumnOf(m_pParser);
    }
    Stop();
}

void CDescriptionReader::OnStart(void* self, const char* name, const char** attributes) {
    auto* const reader = static_cast<CDescriptionReader*>(self);
    reader->Guard([&] { reader->Start(name, attributes); });
}

void CDescriptionReader::OnEnd(void* self, const char* name) {
    auto* const reader = static_cast<CDescriptionReader*>(self);
    reader->Guard([&] { reader->End(name); });
}

void CDescriptionReader::OnText(void* self, const char* text, int length) {
    auto* const reader = static_cast<CDescriptionReader*>(self);
    reader->Guard([&] { reader->Characters({text, static_cast<size_t>(length)}); });
}

/// Elements of other vocabularies may only be inside extensions.
bool CDescriptionReader::IsOurs(std::string_view qualifiedName, std::string_view& local) const {
    // Compared in pieces, so that no element costs a joined string.
    local = LocalName(qualifiedName);
    return qualifiedName.size() == m_NameSpace.size() + 1 + local.size() &&
           qualifiedName.starts_with(m_NameSpace);
}

/// There are frames for elements of a bounded depth, which no real description comes near.
void CDescriptionReader::Start(std::string_view qualifiedName, const char** attributes) {
    // The frames are there from the start and never move, so that references to them hold
    // while children are pushed. This check keeps within them.
    if (m_Depth + m_ExtensionDepth >= kMaxElementDepth) {
        throw ErrorHere(kTooDeep);
    }
    // Inside an extension anything goes, in any vocabulary. It is kept as text.
    if (m_Depth > 0 && m_Frames[m_Depth - 1].grammar == nullptr &&
        m_Frames[m_Depth - 1].row->rule == Rule::Extension) {
        StartInExtension(LocalName(qualifiedName), attributes);
        return;
    }
    std::string_view name;
    if (!IsOurs(qualifiedName, name)) {
        Fail(SchemaError::UnexpectedElement);
    }
    if (m_Depth == 0) {
        StartRoot(name, attributes);
    } else {
        StartChild(name, attributes);
    }
}

void CDescriptionReader::StartRoot(std::string_view name, const char** attributes) {
    const CElementGrammar& root = CGrammar::GetInstance().GetRoot();
    if (name != root.GetType().name) {
        Fail(SchemaError::UnexpectedElement);
    }
    Push(&root, nullptr, name, attributes);
}

/// One look-up in the automaton of the parent: either the element may come next, or it never may,
/// or something is missing before it. The last two have texts of their own.
void CDescriptionReader::StartChild(std::string_view name, const char** attributes) {
    Frame& parent = m_Frames[m_Depth - 1];
    const ElementNumber element = CGrammar::GetInstance().NumberOf(name);
    if (parent.grammar == nullptr || element == kNoElement) {
        Fail(SchemaError::UnexpectedElement);
    }
    const CContentModel& model = parent.grammar->GetModel();
    const CContentModel::State next = model.Next(parent.state, element);
    if (next == CContentModel::kNoState) {
        // The difference decides more than the text: an unexpected element makes the
        // caller try the older schema.
        Fail(model.StandsBehindMissing(parent.state, element) ? SchemaError::ExpectedElement
                                                              : SchemaError::UnexpectedElement);
    }
    parent.state = next;
    Push(parent.grammar->ChildAt(next), &parent.grammar->RowAt(next), name, attributes);
}

/// An element is either a node, a key, or a text for the node around it.
void CDescriptionReader::Push(const CElementGrammar* grammar, const ElementRow* row,
                              std::string_view name, const char** attributes) {
    Frame& frame = m_Frames[m_Depth];
    frame.grammar = grammar;
    frame.row = row;
    frame.state = CContentModel::kBegin;
    // There is no open node: the element that had the frame before has left none.
    frame.text.clear();
    frame.attributeRow = nullptr;
    if (grammar != nullptr) {
        const OpenNode* const parent = m_Depth > 0 ? &m_Frames[m_Depth - 1].open : nullptr;
        frame.open = m_Builder.OpenElement(grammar->GetType(), parent);
    } else if (row->rule == Rule::Key) {
        frame.open = m_Builder.OpenKey(name, m_Frames[m_Depth - 1].open);
    }
    ++m_Depth;
    TakeAttributes(frame, grammar != nullptr ? grammar->GetType().attributes : row->attributes,
                   attributes);
}

/// Order doesn't matter and repeats are refused by the tokeniser, so a bit for each attribute is
/// enough.
void CDescriptionReader::TakeAttributes(Frame& frame, Attributes kind, const char** attributes) {
    const std::span<const AttributeRow> rows = AttributesOf(kind);
    unsigned seen = 0;
    for (; *attributes != nullptr; attributes += 2) {
        const std::string_view name = attributes[0];
        std::string_view local;
        if (IsQualified(name) && !IsOurs(name, local)) {
            // Of another vocabulary, such as the hint where to find the schema.
            continue;
        }
        const auto row = std::find_if(rows.begin(), rows.end(),
                                      [name](const AttributeRow& r) { return r.name == name; });
        if (row == rows.end()) {
            Fail(SchemaError::UnexpectedAttribute);
        }
        seen |= 1U << (row - rows.begin());
        TakeAttribute(frame, kind, *row, attributes[1]);
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].isRequired && (seen & (1U << i)) == 0) {
            Fail(SchemaError::ExpectedAttribute);
        }
    }
    m_Builder.EndAttributes(frame.open);
}

/// For elements with a text, the attribute waits until the text is complete.
void CDescriptionReader::TakeAttribute(Frame& frame, Attributes kind, const AttributeRow& row,
                                       std::string_view value) {
    if (frame.grammar != nullptr || frame.row->rule == Rule::Key) {
        m_Builder.TakeAttribute(frame.open, row, value);
        return;
    }
    // An empty offset counts as none, and a constant offset wins over a reference.
    if (kind == Attributes::Offset && value.empty()) {
        return;
    }
    const std::string_view text = Checked(row.facet, value);
    if (row.property != CPropertyID::pOffset_ID || frame.attributeRow == nullptr) {
        frame.attributeRow = &row;
        frame.attribute = text;
    }
}

/// Extensions are kept as text, for programs that know them. They are written anew, without
/// prefixes.
void CDescriptionReader::StartInExtension(std::string_view name, const char** attributes) {
    std::string& text = m_Frames[m_Depth - 1].text;
    text.append("<").append(name).append(">");
    for (; *attributes != nullptr; attributes += 2) {
        text.pop_back();
        text.append(" ").append(LocalName(attributes[0])).append("=\"").append(attributes[1]);
        text.append("\">");
    }
    ++m_ExtensionDepth;
}

/// expat has matched the tags already, so the name only matters inside an extension.
void CDescriptionReader::End(std::string_view qualifiedName) {
    if (m_ExtensionDepth > 0) {
        --m_ExtensionDepth;
        m_Frames[m_Depth - 1].text.append("</").append(LocalName(qualifiedName)).append(">");
        return;
    }
    Frame& frame = m_Frames[m_Depth - 1];
    if (frame.grammar == nullptr) {
        if (frame.row->rule == Rule::Key) {
            m_Builder.CloseKey(frame.open, frame.text);
        } else {
            // A text belongs to the node around it. The row and the attribute were looked
            // up at the start tag.
            m_Builder.TakeText(m_Frames[m_Depth - 2].open, *frame.row, frame.text,
                               {frame.attributeRow, frame.attribute});
        }
        --m_Depth;
        return;
    }
    if (!frame.grammar->GetModel().IsComplete(frame.state)) {
        Fail(SchemaError::ExpectedElement);
    }
    const ElementType& type = frame.grammar->GetType();
    const NodeID_t child = m_Builder.CloseElement(frame.open, type);
    --m_Depth;
    if (m_Depth > 0) {
        m_Builder.TakeChild(m_Frames[m_Depth - 1].open, type, child);
    }
    // Frees what is left, such as the template of a structure, now and not at the next
    // use of the frame.
    frame.open = OpenNode();
}

/// The tokeniser may hand over one text in several parts.
void CDescriptionReader::Characters(std::string_view text) {
    // expat refuses text outside of the root itself.
    if (m_Depth == 0) {
        return;
    }
    Frame& frame = m_Frames[m_Depth - 1];
    if (frame.grammar == nullptr) {
        frame.text.append(text);
    } else if (!Trimmed(text).empty()) {
        Fail(SchemaError::UnexpectedCharacters);
    }
}

}  // namespace GenApi_3_0_ORVANE
