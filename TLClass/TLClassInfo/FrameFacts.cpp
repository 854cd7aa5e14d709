// Every frame passes here, so that the table is made once and one loop asks for all of it.

#include "TLClassInfo/FrameFacts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "Base/EachFrame.h"
#include "TLClassInfo/BufferRows.h"

namespace OVTLClass {

namespace {

/// A number of 64 bits or a boolean of one byte; the other field is null.
struct FrameFact {
    int32_t command = 0;
    GenTL::INFO_DATATYPE type{};
    InfoUint64 BUFFER_INFO::*number = nullptr;
    InfoBool BUFFER_INFO::*flag = nullptr;
};

constexpr bool IsOfFrame(const InfoRow<BUFFER_INFO>& row) {
    return row.use == InfoUse::Frame;
}

constexpr size_t kFacts =
    static_cast<size_t>(std::count_if(std::begin(kBufferRows), std::end(kBufferRows), IsOfFrame));

std::array<FrameFact, kFacts> MakeFacts() {
    std::array<FrameFact, kFacts> facts;
    size_t count = 0;
    for (const InfoRow<BUFFER_INFO>& row : kBufferRows) {
        if (IsOfFrame(row)) {
            FrameFact& fact = facts[count++];
            fact.command = row.command;
            fact.type = row.type;
            if (const auto* const flag = std::get_if<InfoBool BUFFER_INFO::*>(&row.field)) {
                fact.flag = *flag;
            } else {
                // Another type doesn't compile.
                fact.number = std::get<InfoUint64 BUFFER_INFO::*>(row.field);
            }
        }
    }
    return facts;
}

/// When the library is loaded: the sanitizers make no constant of it.
const std::array<FrameFact, kFacts> kFrameFacts = MakeFacts();

/// The questions about one frame, and their answers.
class Questions {
public:
    explicit Questions(const BUFFER_INFO& info) {
        for (const FrameFact& fact : kFrameFacts) {
            if (!(fact.flag != nullptr ? (info.*fact.flag).valid : (info.*fact.number).valid)) {
                m_facts[m_count] = &fact;
                m_stack[m_count] = {fact.command, fact.type, &m_answers[m_count],
                                    fact.flag != nullptr ? sizeof(uint8_t) : sizeof(uint64_t),
                                    GenTL::GC_ERR_ERROR};
                ++m_count;
            }
        }
    }

    void Ask(const CGenTLLib& lib, void* stream, void* buffer) {
        if (lib.DSGetBufferInfoStacked(stream, buffer, m_stack.data(), m_count) == 0) {
            return;
        }
        for (size_t i = 0; i < m_count; ++i) {
            // The entries are packed: a producer gets the addresses of plain variables.
            GenTL::INFO_DATATYPE type = m_facts[i]->type;
            size_t size = m_facts[i]->flag != nullptr ? sizeof(uint8_t) : sizeof(uint64_t);
            m_stack[i].iResult = lib.DSGetBufferInfo(stream, buffer, m_facts[i]->command, &type,
                                                     &m_answers[i], &size);
        }
    }

    void Store(BUFFER_INFO& info) const {
        for (size_t i = 0; i < m_count; ++i) {
            // What a producer leaves behind at a failure doesn't count.
            if (m_stack[i].iResult != 0) {
                continue;
            }
            if (m_facts[i]->flag == nullptr) {
                info.*m_facts[i]->number = {m_answers[i], true};
            } else {
                // A producer's boolean is a byte of any value; only a C++ bool must be 0 or 1.
                uint8_t flag = 0;
                std::memcpy(&flag, &m_answers[i], sizeof flag);
                info.*m_facts[i]->flag = {flag != 0, true};
            }
        }
    }

private:
    std::array<GenTL::DS_BUFFER_INFO_STACKED, kFacts> m_stack;
    std::array<const FrameFact*, kFacts> m_facts;
    std::array<uint64_t, kFacts> m_answers{};
    size_t m_count = 0;
};

}  // namespace

OV_EACH_FRAME void CompleteFrameFacts(const CGenTLLib& lib, void* stream, void* buffer,
                                      BUFFER_INFO& info) {
    Questions questions(info);
    questions.Ask(lib, stream, buffer);
    questions.Store(info);
}

}  // namespace OVTLClass
