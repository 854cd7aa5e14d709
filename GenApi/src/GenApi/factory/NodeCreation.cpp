// The one place that knows all node classes. Everything else goes by the number of the type.

#include "factory/NodeCreation.h"

#include <array>

#include "Base/GCException.h"
#include "confrom/IEEE1212ParserImpl.h"
#include "confrom/IntKeyImpl.h"
#include "confrom/TxtKeyImpl.h"
#include "formula/ConverterBase.h"
#include "formula/SwissKnifeBase.h"
#include "registers/DcamAccessCtrlRegImpl.h"
#include "registers/FltRegImpl.h"
#include "registers/MaskedIntRegImpl.h"
#include "registers/SmartFeatureImpl.h"
#include "registers/StringRegisterImpl.h"
#include "values/BooleanImpl.h"
#include "values/CategoryImpl.h"
#include "values/CommandImpl.h"
#include "values/EnumEntryImpl.h"
#include "values/EnumerationImpl.h"
#include "values/FloatImpl.h"
#include "values/IntegerImpl.h"
#include "values/StringNodeImpl.h"
#include "values/ValueNodeImpl.h"

namespace GenApi_3_0_ORVANE {

namespace {

using Maker = std::unique_ptr<INodePrivate> (*)();

template <class NodeClass>
std::unique_ptr<INodePrivate> Make() {
    return std::make_unique<NodeClass>();
}

struct Row {
    CNodeData::ENodeType_t type;
    Maker make;
};

/// The node classes by type. The structure is missing: the parser has made fields of it.
constexpr std::array kRows{
    Row{CNodeData::Node_ID, &Make<CValueNode>},
    Row{CNodeData::Category_ID, &Make<CCategory>},
    Row{CNodeData::Integer_ID, &Make<CInteger>},
    Row{CNodeData::Enumeration_ID, &Make<CEnumeration>},
    Row{CNodeData::EnumEntry_ID, &Make<CEnumEntry>},
    Row{CNodeData::MaskedIntReg_ID, &Make<CMaskedIntReg>},
    Row{CNodeData::Register_ID, &Make<CRegister>},
    Row{CNodeData::IntReg_ID, &Make<CIntReg>},
    Row{CNodeData::Float_ID, &Make<CFloat>},
    Row{CNodeData::FloatReg_ID, &Make<CFltReg>},
    Row{CNodeData::SwissKnife_ID, &Make<CSwissKnife>},
    Row{CNodeData::IntSwissKnife_ID, &Make<CIntSwissKnife>},
    Row{CNodeData::IntKey_ID, &Make<CIntKey>},
    Row{CNodeData::TextDesc_ID, &Make<CTxtKey>},
    Row{CNodeData::Port_ID, &Make<CPort>},
    Row{CNodeData::ConfRom_ID, &Make<CIEEE1212Parser>},
    Row{CNodeData::AdvFeatureLock_ID, &Make<CDcamAccessCtrlReg>},
    Row{CNodeData::SmartFeature_ID, &Make<CSmartFeature>},
    Row{CNodeData::String_ID, &Make<CStringNode>},
    Row{CNodeData::StringReg_ID, &Make<CStringRegister>},
    Row{CNodeData::Boolean_ID, &Make<CBoolean>},
    Row{CNodeData::Command_ID, &Make<CCommand>},
    Row{CNodeData::Converter_ID, &Make<CConverter>},
    Row{CNodeData::IntConverter_ID, &Make<CIntConverter>},
};

}  // namespace

/// By a search: the table is short, and making a node takes much longer than finding its row.
std::unique_ptr<INodePrivate> CreateNode(CNodeData::ENodeType_t type) {
    for (const Row& row : kRows) {
        if (row.type == type) {
            return row.make();
        }
    }
    RUNTIME_EXCEPTION("Fatal error : attempt to create unknown node type");
}

}  // namespace GenApi_3_0_ORVANE
