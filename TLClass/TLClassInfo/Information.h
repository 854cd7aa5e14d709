#pragma once
/// Reads records from GenTL information calls.
///
/// A record is a table of rows (command, field); one loop reads them all. What
/// a producer refuses leaves its field blank and invalid, and nothing is
/// raised, because producers differ in what they implement.

#include <cstdint>
#include <span>
#include <string>
#include <tuple>
#include <variant>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

/// One value of a record: the GenTL command that asks for it, its GenTL type,
/// and its field.
template <class Record>
struct InfoRow {
    int32_t command;
    int32_t type;
    std::variant<InfoString Record::*, InfoInt32 Record::*, InfoUint64 Record::*,
                 InfoPointer Record::*, InfoBool Record::*>
        field;
};

/// The rows of a record, in the order in which they are asked.
template <class Record>
std::span<const InfoRow<Record>> InfoRowsOf();

class COvInformation {
public:
    virtual ~COvInformation() = default;
    COvInformation(const COvInformation&) = delete;
    COvInformation& operator=(const COvInformation&) = delete;

protected:
    COvInformation() = default;

    /// Reads every row of the record.
    template <class Record>
    Record _GetRecord() {
        Record record;
        for (const InfoRow<Record>& row : InfoRowsOf<Record>()) {
            std::visit([&](auto field) { _Get(row.command, row.type, record.*field); }, row.field);
        }
        return record;
    }

private:
    /// The GenTL call behind this object, with its status.
    virtual int32_t __AcquireInformation(int32_t command, int32_t* type, void* buffer,
                                         size_t* size) = 0;

    void _Get(int32_t command, int32_t type, InfoString& info);
    void _Get(int32_t command, int32_t type, InfoInt32& info);
    void _Get(int32_t command, int32_t type, InfoUint64& info);
    void _Get(int32_t command, int32_t type, InfoPointer& info);
    void _Get(int32_t command, int32_t type, InfoBool& info);

    template <class T>
    bool __GetFixed(int32_t command, int32_t type, T& value);
    bool __GetStringLength(int32_t command, int32_t type, size_t& size);
    bool __GetStringContent(int32_t command, int32_t type, size_t size, std::string& text);
};

/// The information call `Call` of a producer on some handles and names.
template <auto Call, class... Handles>
class CInformationCall : public COvInformation {
public:
    explicit CInformationCall(const CGenTLLib& lib, Handles... handles)
        : m_lib(lib), m_handles(handles...) {}

private:
    int32_t __AcquireInformation(int32_t command, int32_t* type, void* buffer,
                                 size_t* size) override {
        return std::apply(
            [&](auto... handles) { return (m_lib.*Call)(handles..., command, type, buffer, size); },
            m_handles);
    }

    const CGenTLLib& m_lib;
    std::tuple<Handles...> m_handles;
};

class CTLInfomationFromEmpty : public CInformationCall<&CGenTLLib::GCGetInfo> {
public:
    using CInformationCall::CInformationCall;
    TL_INFO GetTLInformation() { return _GetRecord<TL_INFO>(); }
};

class CTLInfomationFromHandle : public CInformationCall<&CGenTLLib::TLGetInfo, void*> {
public:
    using CInformationCall::CInformationCall;
    TL_INFO GetTLInfomation() { return _GetRecord<TL_INFO>(); }
};

class CInterfaceInformationFromHandle : public CInformationCall<&CGenTLLib::IFGetInfo, void*> {
public:
    using CInformationCall::CInformationCall;
    IF_INFO GetInterfaceInfomation() { return _GetRecord<IF_INFO>(); }
};

class CInterfaceInformationFromID
    : public CInformationCall<&CGenTLLib::TLGetInterfaceInfo, void*, const char*> {
public:
    using CInformationCall::CInformationCall;
    IF_INFO GetInterfaceInformation() { return _GetRecord<IF_INFO>(); }
};

class CDeviceInformationFromHandle : public CInformationCall<&CGenTLLib::DevGetInfo, void*> {
public:
    using CInformationCall::CInformationCall;
    DEV_INFO GetDeviceInfomation() { return _GetRecord<DEV_INFO>(); }
};

class CDeviceInformationFromID
    : public CInformationCall<&CGenTLLib::IFGetDeviceInfo, void*, const char*> {
public:
    using CInformationCall::CInformationCall;
    DEV_INFO GetDeviceInformation() { return _GetRecord<DEV_INFO>(); }
};

class CDataStreamInformationFromHandle : public CInformationCall<&CGenTLLib::DSGetInfo, void*> {
public:
    using CInformationCall::CInformationCall;
    DS_INFO GetDataStreamInfomation() { return _GetRecord<DS_INFO>(); }
};

class CBufferInformationFromHandle
    : public CInformationCall<&CGenTLLib::DSGetBufferInfo, void*, void*> {
public:
    using CInformationCall::CInformationCall;
    BUFFER_INFO GetBufferInfomation() { return _GetRecord<BUFFER_INFO>(); }
};

class CPortInformationFromHandle : public CInformationCall<&CGenTLLib::GCGetPortInfo, void*> {
public:
    using CInformationCall::CInformationCall;
    PORT_INFO GetPortInfomation() { return _GetRecord<PORT_INFO>(); }
};

}  // namespace OVTLClass
