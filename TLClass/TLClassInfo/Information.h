#pragma once
/// Reads records from GenTL information calls.
///
/// A record is a table of rows (command, field); one loop reads them all. What
/// a producer refuses leaves its field blank and invalid, and nothing is
/// thrown, because producers differ in what they implement.

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
    GenTL::INFO_DATATYPE type;
    std::variant<InfoString Record::*, InfoInt32 Record::*, InfoUint64 Record::*,
                 InfoPointer Record::*, InfoBool Record::*>
        field;
    InfoUse use = InfoUse::Demand;
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
            _GetRow(row, record);
        }
        return record;
    }

    /// Reads the rows of that use which the record doesn't have yet.
    template <class Record>
    void _CompleteRecord(Record& record, InfoUse use) {
        for (const InfoRow<Record>& row : InfoRowsOf<Record>()) {
            const auto isKnown = [&record](auto field) { return (record.*field).valid; };
            if (row.use == use && !std::visit(isKnown, row.field)) {
                _GetRow(row, record);
            }
        }
    }

private:
    template <class Record>
    void _GetRow(const InfoRow<Record>& row, Record& record) {
        std::visit([&](auto field) { _Get(row.command, row.type, record.*field); }, row.field);
    }

    /// The GenTL call of this object. Returns its status.
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

/// An information call of a producer, with the handles and names that it is asked for.
template <class EntryPoint, class... Handles>
class CInformationQuery final : public COvInformation {
public:
    /// @param call  of the producer; it outlives the query
    explicit CInformationQuery(const EntryPoint& call, Handles... handles)
        : m_call(call), m_handles(handles...) {}

    template <class Record>
    Record Get() {
        return _GetRecord<Record>();
    }
    /// Asks for what the record doesn't have of that use yet.
    template <class Record>
    void Complete(Record& record, InfoUse use) {
        _CompleteRecord(record, use);
    }

private:
    int32_t __AcquireInformation(int32_t command, int32_t* type, void* buffer,
                                 size_t* size) override {
        return std::apply(
            [&](auto... handles) { return m_call(handles..., command, type, buffer, size); },
            m_handles);
    }

    const EntryPoint& m_call;
    std::tuple<Handles...> m_handles;
};

}  // namespace OVTLClass
