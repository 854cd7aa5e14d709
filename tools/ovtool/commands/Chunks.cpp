#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/ChunkAdapterU3V.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INodeMap.h"
#include "camera/FrameReceiver.h"
#include "camera/GenTLProducer.h"
#include "camera/ProducerNodes.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Interrupts.h"
#include "support/Json.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

namespace Engine = GenApi_3_0_ORVANE;

/// Which camera it is, as the library has it.
struct Listed {
    std::string deviceId;
    OV_DEVICE_CLASS deviceClass;
};

Listed Look(const CameraChoice& choice) {
    const Library library;
    const auto cameras = Library::FindCameras(kSearchTimeout);
    const OV_DEVICE_BASE_INFO& camera = cameras[IndexOf(choice, cameras) - 1];
    return {FieldText(camera.szDeviceID), camera.deviceClass};
}

/// The nodes of the camera's own description, which the library keeps to itself: read by its
/// producer, while the library is closed. Raises when the camera isn't there, when another program
/// holds it and when its description lies elsewhere.
NodeMap LoadCameraNodes(const std::string& deviceId) {
    NodeMap nodes;
    VisitCamera(deviceId, kSearchTimeout,
                [&](const GenTLProducer& producer, GenTL::IF_HANDLE iface, const std::string& id) {
                    producer.WithDevice(iface, id, [&](GenTL::PORT_HANDLE port) {
                        nodes = LoadNodes(producer, port);
                    });
                });
    if (!nodes) {
        throw ToolError("the camera vanished while it was looked at");
    }
    return nodes;
}

/// The features that frames bring: nodes of their own, without a way to the
/// camera, so that what can be read comes from the frame.
class FrameFeatures {
public:
    explicit FrameFeatures(const Listed& camera) : m_map(LoadCameraNodes(camera.deviceId)) {
        if (camera.deviceClass == OV_DEVICE_CLASS_U3V) {
            m_adapter = std::make_unique<Engine::CChunkAdapterU3V>(m_map.get());
        } else {
            m_adapter = std::make_unique<Engine::CChunkAdapterGEV>(m_map.get());
        }
        Engine::node_vector nodes;
        m_map->GetNodes(nodes);
        for (Engine::INode* const node : nodes) {
            auto* const value = dynamic_cast<Engine::IValue*>(node);
            if (value != nullptr && node->IsFeature() && !IsReadable(*node)) {
                m_features.push_back({node, value});
            }
        }
    }

    /// The features of a frame by name.
    Json Read(const OV_FRAME_BUFFER& frame) {
        m_adapter->AttachBuffer(static_cast<uint8_t*>(frame.pImgBuf), frame.nImgSize);
        Json values = Json::object();
        for (const auto& [node, value] : m_features) {
            if (IsReadable(*node)) {
                values[node->GetName().c_str()] = ValueOrNull(*value);
            }
        }
        m_adapter->DetachBuffer();
        return values;
    }

private:
    struct Feature {
        Engine::INode* node;
        Engine::IValue* value;
    };
    static bool IsReadable(Engine::INode& node) { return Engine::IsReadable(node.GetAccessMode()); }
    /// Null for one that can't be read though the frame has it.
    static Json ValueOrNull(Engine::IValue& value) {
        try {
            return ToJson(value);
        } catch (const GenICam_3_0_ORVANE::GenericException&) {
            return nullptr;
        }
    }
    static Json ToJson(Engine::IValue& value) {
        if (auto* const integer = dynamic_cast<Engine::IInteger*>(&value)) {
            return integer->GetValue();
        }
        if (auto* const number = dynamic_cast<Engine::IFloat*>(&value)) {
            return number->GetValue();
        }
        if (auto* const boolean = dynamic_cast<Engine::IBoolean*>(&value)) {
            return boolean->GetValue();
        }
        return value.ToString().c_str();
    }

    NodeMap m_map;
    std::unique_ptr<Engine::CChunkAdapter> m_adapter;
    std::vector<Feature> m_features;
};

/// The camera's chunk mode, on for the life of the object.
class ChunkMode {
public:
    explicit ChunkMode(OV_DEV_HANDLE camera) : m_camera(camera) {
        Check(OVGetBool(camera, OV_FEATURE_ChunkModeActive, &m_before), "read ChunkModeActive");
        if (!m_before) {
            Check(OVSetBool(camera, OV_FEATURE_ChunkModeActive, true), "set ChunkModeActive");
        }
    }
    ~ChunkMode() {
        if (!m_before) {
            OVSetBool(m_camera, OV_FEATURE_ChunkModeActive, false);
        }
    }
    ChunkMode(const ChunkMode&) = delete;
    ChunkMode& operator=(const ChunkMode&) = delete;

private:
    OV_DEV_HANDLE m_camera;
    bool m_before = false;
};

/// Nothing when an interrupt came.
std::optional<Json> ReadFrame(FrameReceiver& receiver, FrameFeatures& features, uint32_t timeout) {
    OV_FRAME_BUFFER* const frame = receiver.Await(timeout);
    if (frame == nullptr) {
        return std::nullopt;
    }
    const uint64_t id = frame->nFrameID;
    if (!IsComplete(*frame)) {
        receiver.GiveBack(frame);
        throw IncompleteFrame(id);
    }
    Json document = {{"id", id}, {"chunks", features.Read(*frame)}};
    receiver.GiveBack(frame);
    return document;
}

void Print(const Json& frame) {
    std::printf("frame %s\n", frame["id"].dump().c_str());
    for (const auto& [name, value] : frame["chunks"].items()) {
        std::printf("  %s = %s\n", name.c_str(), ToText(value).c_str());
    }
    FlushOutput();
}

/// Frames for people at once, for machines at the end, also at one by a failure.
class ChunkReport {
public:
    explicit ChunkReport(bool json) : m_json(json) {}
    void Tell(Json frame) {
        if (m_json) {
            m_frames.push_back(std::move(frame));
        } else {
            Print(frame);
        }
    }
    void End() const {
        if (m_json) {
            PrintJson({{"frames", m_frames}});
        }
    }

private:
    const bool m_json;
    Json m_frames = Json::array();
};

void TakeFramesWithChunks(OV_DEV_HANDLE camera, Interrupts& interrupts, FrameFeatures& features,
                          const ChunkOptions& options, ChunkReport& report) {
    const ChunkMode mode(camera);
    const Acquisition acquisition(camera);
    FrameReceiver receiver(camera, interrupts);
    for (uint32_t number = 0; number < options.count; ++number) {
        std::optional<Json> frame = ReadFrame(receiver, features, options.timeout);
        if (!frame) {
            return;
        }
        report.Tell(*std::move(frame));
    }
}

void ReadChunks(const CameraChoice& choice, const ChunkOptions& options, bool json) {
    Interrupts interrupts;
    FrameFeatures features(Look(choice));
    const Camera camera(choice, Access::Control);
    ChunkReport report(json);
    const auto failure = FailureOf(
        [&] { TakeFramesWithChunks(camera.Handle(), interrupts, features, options, report); });
    report.End();
    if (failure) {
        throw *failure;
    }
    interrupts.Check();
}

}  // namespace

void PrintChunks(const CameraChoice& choice, const ChunkOptions& options, bool json) {
    try {
        ReadChunks(choice, options, json);
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        throw ToolError(std::string("can't read chunks: ") + error.GetDescription());
    }
}
