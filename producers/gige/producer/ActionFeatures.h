#pragma once
/// The features by which an adapter sends action commands.

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "framework/RegisterSpace.h"
#include "gige/discovery/ActionCall.h"

namespace OvGige {

/// What an interface knows that sends actions.
class ActionHost {
public:
    virtual ~ActionHost() = default;
    virtual Adapter ActionAdapter() const = 0;
    /// Cameras that the user named.
    virtual std::vector<Endpoint> ActionTargets() const = 0;
    /// The ID of the camera at that place; empty if nobody knows it.
    virtual std::string IdOfCamera(const Endpoint& place) const = 0;
};

/// The settings of the next action and the answers to the last one. Any thread may use them; one
/// action is sent at a time.
class ActionFeatures {
public:
    explicit ActionFeatures(const ActionHost& host);

    /// Adds the features' registers. The features must live as long as the registers.
    void AddRegisters(OvProducer::RegisterSpace& registers);

private:
    /// What the user sets. Numbers are as registers have them.
    struct Settings {
        std::atomic<int64_t> deviceKey = 0;
        std::atomic<int64_t> groupKey = 0;
        std::atomic<int64_t> groupMask = 0;
        std::atomic<int64_t> isScheduled = 0;
        std::atomic<int64_t> time = 0;
        std::atomic<int64_t> destination = 0xFFFFFFFF;
        std::atomic<int64_t> answerTime = 100;
    };
    struct SettingRegister;
    static const SettingRegister kSettings[];

    void AddSettings(OvProducer::RegisterSpace& registers);
    void AddAnswers(OvProducer::RegisterSpace& registers);
    void Send();
    ActionRequest Request() const;
    int64_t LastAnswer() const;
    void Select(int64_t answer);
    /// @throws OvProducer::Failure GC_ERR_NOT_AVAILABLE if nobody answered
    ActionAnswer Selected() const;

    const ActionHost& m_host;
    Settings m_settings;
    std::mutex m_sending;
    uint16_t m_requestId;        // guarded by the mutex
    mutable std::mutex m_state;  // guards what follows
    std::vector<ActionAnswer> m_answers;
    size_t m_selected = 0;
};

/// Adds the features to the description of an interface module.
std::string WithActionFeatures(std::string description);

}  // namespace OvGige
