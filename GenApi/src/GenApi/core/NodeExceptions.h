#pragma once
/// Failures of a node: they carry its name and the client's call that led to it.

#include "Base/GCException.h"
#include "core/INodeMapPrivate.h"

namespace GenApi_3_0_ORVANE {

/// The names that a node's failure carries.
struct NodePlace {
    gcstring name;
    gcstring entryPoint;
};

NodePlace PlaceOf(INodePrivate& node);

/// Makes an exception of type T that arose at a node.
template <class T>
class ExceptionReporterNode {
public:
    ExceptionReporterNode(INodePrivate& node, const char* sourceFileName, unsigned sourceLine,
                          const char* exceptionType)
        : m_Node(node),
          m_SourceFileName(sourceFileName),
          m_SourceLine(sourceLine),
          m_ExceptionType(exceptionType) {}

    [[gnu::format(printf, 2, 3)]] T Report(const char* format, ...) const {
        GenICam_3_0_ORVANE::DescriptionBuffer description;
        va_list arguments;
        va_start(arguments, format);
        GenICam_3_0_ORVANE::FormatDescription(description, format, arguments);
        va_end(arguments);
        const NodePlace place = PlaceOf(m_Node);
        return T(description.data(), m_SourceFileName, m_SourceLine, place.entryPoint.c_str(),
                 place.name.c_str(), m_ExceptionType);
    }

private:
    INodePrivate& m_Node;
    const char* m_SourceFileName;
    unsigned m_SourceLine;
    const char* m_ExceptionType;
};

/// Marks failures that the description causes, or a value that no node can work with, rather than
/// the way to the device. They come again whenever the node is used, so walks over many nodes
/// skip the node.
class NodeFaultMark {
public:
    virtual ~NodeFaultMark() = default;
};

/// An exception of type T with that mark.
template <class T>
class NodeFaultException : public T, public NodeFaultMark {
public:
    using T::T;
};

}  // namespace GenApi_3_0_ORVANE

// Used inside a node's members like a function: ACCESS_EXCEPTION_NODE("Node is not writable");
#define OV_THROW_NODE_AS(exception, type)                                                         \
    throw ::GenApi_3_0_ORVANE::ExceptionReporterNode<exception>(*this, __FILE__, __LINE__, #type) \
        .Report
#define OV_THROW_NODE(type) OV_THROW_NODE_AS(::GenICam_3_0_ORVANE::type, type)
#define GENERIC_EXCEPTION_NODE OV_THROW_NODE(GenericException)
#define INVALID_ARGUMENT_EXCEPTION_NODE OV_THROW_NODE(InvalidArgumentException)
#define OUT_OF_RANGE_EXCEPTION_NODE OV_THROW_NODE(OutOfRangeException)
#define RUNTIME_EXCEPTION_NODE OV_THROW_NODE(RuntimeException)
#define LOGICAL_ERROR_EXCEPTION_NODE OV_THROW_NODE(LogicalErrorException)
#define ACCESS_EXCEPTION_NODE OV_THROW_NODE(AccessException)
#define OV_THROW_NODE_FAULT(type) \
    OV_THROW_NODE_AS(::GenApi_3_0_ORVANE::NodeFaultException<::GenICam_3_0_ORVANE::type>, type)
#define RUNTIME_FAULT_NODE OV_THROW_NODE_FAULT(RuntimeException)
#define LOGICAL_ERROR_FAULT_NODE OV_THROW_NODE_FAULT(LogicalErrorException)
