#pragma once
/// The nodes of a camera's description beside those of the library: read through the
/// camera's raw port and never from a cache.

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FeatureWalk.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "GenApi/IValue.h"

namespace GenApi = GenApi_3_0_ORVANE;

/// The registers of an open camera as an application reaches them.
class RawPort : public GenApi::IPort {
public:
    explicit RawPort(OV_DEV_HANDLE camera) : m_camera(camera) {}

    GenApi::EAccessMode GetAccessMode() override { return GenApi::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

private:
    OV_DEV_HANDLE m_camera;
};

class ReferenceMap {
public:
    ReferenceMap(OV_DEV_HANDLE camera, const std::string& description);

    GenApi::INodeMap& Map() const { return *m_map; }
    /// All nodes with a value that applications see.
    std::vector<GenApi::IValue*> Features() const;

    /// "NI" when there is none of that name.
    Answer<GenApi::EAccessMode> AccessMode(const Feature& feature) const;
    /// As the library answers, with the text of the failure.
    Answer<FeatureValue> Read(const Feature& feature) const;
    /// Whether the description says that it chooses what others mean.
    bool IsSelector(const Feature& feature) const;

    /// Gives each feature that can be written a value that it may have, and the
    /// camera a frame that fits into memory: what a camera is like when it was
    /// switched on, and made-up memory isn't.
    /// @return the features for which no such value is found
    std::set<std::string> PowerUp();
    /// Why the camera's settings can't be saved; empty when they can.
    std::string FailureOfSaving() const;
    /// Makes the frame as large, if a register says how large it is.
    void SetPayloadSize(int64_t size);

private:
    void ForEach(const std::function<void(GenApi::IValue&)>& run) const;
    /// Selectors of millions of values would take as many combinations.
    void LimitSelector(GenApi::IValue& value);
    /// An enumeration that can be written has something to be written, and is at it
    /// if it holds its value itself.
    void OfferEntry(GenApi::IValue& value);
    /// Where several features write one register as a whole, the last one wins: the
    /// others get what is left of that.
    void SettleSharedRegisters();
    void PutNumberBehind(GenApi::INode& node, int64_t number, const std::function<bool()>& isDone);

    struct Destroyer {
        void operator()(GenApi::INodeMap* map) const {
            dynamic_cast<GenApi::IDestroy&>(*map).Destroy();
        }
    };

    RawPort m_port;
    std::unique_ptr<GenApi::INodeMap, Destroyer> m_map;
};
