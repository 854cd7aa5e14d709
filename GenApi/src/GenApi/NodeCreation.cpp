#include "NodeCreation.h"

#include <array>

#include "Base/GCException.h"
#include "GenApi/impl/Boolean.h"
#include "GenApi/impl/Category.h"
#include "GenApi/impl/Command.h"
#include "GenApi/impl/Converter.h"
#include "GenApi/impl/DcamAccessCtrlReg.h"
#include "GenApi/impl/EnumEntry.h"
#include "GenApi/impl/Enumeration.h"
#include "GenApi/impl/Float.h"
#include "GenApi/impl/FltReg.h"
#include "GenApi/impl/IEEE1212Parser.h"
#include "GenApi/impl/IntKey.h"
#include "GenApi/impl/Integer.h"
#include "GenApi/impl/MaskedIntReg.h"
#include "GenApi/impl/SmartFeature.h"
#include "GenApi/impl/StringNode.h"
#include "GenApi/impl/StringRegister.h"
#include "GenApi/impl/SwissKnife.h"
#include "GenApi/impl/TxtKey.h"
#include "GenApi/impl/ValueNode.h"

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

/// The node classes by type.
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

std::unique_ptr<INodePrivate> CreateNode(CNodeData::ENodeType_t type) {
    for (const Row& row : kRows) {
        if (row.type == type) {
            return row.make();
        }
    }
    RUNTIME_EXCEPTION("Fatal error : attempt to create unknown node type");
}

}  // namespace GenApi_3_0_ORVANE
