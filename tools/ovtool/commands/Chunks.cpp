#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "camera/FrameReceiver.h"
#include "camera/Node.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Interrupts.h"
#include "support/Json.h"
#include "support/Output.h"
#include "support/Text.h"

namespace {

/// Whether the register lies in what frames bring, and not in the camera's memory.
bool IsInChunk(const Node& bytes) {
    const auto sources = bytes.Related(OV_NODE_RELATION_SOURCES);
    return std::any_of(sources.begin(), sources.end(), [](const Node& source) {
        return source.Type() == OV_NODE_TYPE_PORT && !source.Property("ChunkID").empty();
    });
}

/// The features that frames bring.
class FrameFeatures {
public:
    explicit FrameFeatures(OV_DEV_HANDLE camera) : m_camera(camera) {
        for (const Node& node : Node::All(camera, OV_NODE_MODULE_CAMERA)) {
            const auto registers = node.Related(OV_NODE_RELATION_REGISTERS);
            if (node.Type() != OV_NODE_TYPE_CATEGORY &&
                std::any_of(registers.begin(), registers.end(), IsInChunk)) {
                m_features.push_back(node);
            }
        }
    }

    /// The features of a frame by name.
    Json Read(const OV_FRAME_BUFFER& frame) const {
        Check(OvNodeAttachFrame(m_camera, &frame), "read chunks");
        Json values = Json::object();
        for (const Node& feature : m_features) {
            if (feature.IsReadable()) {
                values[feature.Name()] = ValueOrNull(feature);
            }
        }
        return values;
    }

private:
    /// Null for one that can't be read though the frame has it.
    static Json ValueOrNull(const Node& feature) {
        Json value;
        FailureOf([&] { value = ToJson(feature.Read()); });
        return value;
    }

    OV_DEV_HANDLE m_camera;
    std::vector<Node> m_features;
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
std::optional<Json> ReadFrame(FrameReceiver& receiver, const FrameFeatures& features,
                              uint32_t timeout) {
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

void TakeFramesWithChunks(OV_DEV_HANDLE camera, Interrupts& interrupts, const ChunkOptions& options,
                          ChunkReport& report) {
    const FrameFeatures features(camera);
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

}  // namespace

void PrintChunks(const CameraChoice& choice, const ChunkOptions& options, bool json) {
    Interrupts interrupts;
    const Camera camera(choice, Access::Control);
    ChunkReport report(json);
    const auto failure =
        FailureOf([&] { TakeFramesWithChunks(camera.Handle(), interrupts, options, report); });
    report.End();
    if (failure) {
        throw *failure;
    }
    interrupts.Check();
}
