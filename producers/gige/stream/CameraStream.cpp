#include "gige/stream/CameraStream.h"

#include "gige/stream/StreamFeatures.h"

namespace OvGige {

OvProducer::StreamFacts CameraStream::Facts() {
    OvProducer::StreamFacts facts;
    facts.id = "Stream0";
    facts.tlType = GenTL::TLTYPE_GEV;
    return facts;
}

std::unique_ptr<OvProducer::FrameEngine> CameraStream::MakeEngine() {
    return std::make_unique<StreamEngine>(m_host, static_cast<StreamState&>(*this));
}

void CameraStream::AddRegisters(OvProducer::RegisterSpace& registers) {
    const auto write = [this](const SettingFeature& feature, int64_t value) {
        if (value < feature.min || value > feature.max) {
            throw OvProducer::Failure(
                GenTL::GC_ERR_INVALID_VALUE,
                std::string(feature.name) + " can't be " + std::to_string(value));
        }
        const std::lock_guard lock(m_mutex);
        m_settings.*feature.field = value;
    };
    AddFeatureRegisters(
        registers,
        {.readSetting = [this](const auto& feature) { return Settings().*feature.field; },
         .writeSetting = write,
         .readFact =
             [this](const auto& feature) {
                 const std::lock_guard lock(m_mutex);
                 return m_facts.*feature.field;
             },
         .readCount = [this](const auto& feature) { return (m_account.*feature.field).Value(); }});
}

StreamSettings CameraStream::Settings() const {
    const std::lock_guard lock(m_mutex);
    return m_settings;
}

void CameraStream::SetFacts(const ReceiverFacts& facts) {
    const std::lock_guard lock(m_mutex);
    m_facts = facts;
}

}  // namespace OvGige
