#pragma once
/// A test of what cameras on the network have beyond others.

#include "OvINodes.h"
#include "SimulatedCameras.h"
#include "cameras/CameraTest.h"
#include "gige/LoopbackSocket.h"
#include "gige/device/CameraConnection.h"
#include "gige/net/UdpLink.h"
#include "gige/protocol/Bootstrap.h"

class GigeCameraTest : public CameraTest {
protected:
    /// Another host with a camera.
    class OtherHost {
    public:
        OtherHost(const OvGige::Endpoint& camera, OvGige::Access access)
            : OtherHost(LoopbackSocket(), camera, access) {}

        const OvGige::Endpoint& Address() const { return m_address; }
        uint32_t ReadRegister(uint32_t address) {
            return m_connection.Memory().ReadRegister(address);
        }

    private:
        OtherHost(OvGige::UdpSocket socket, const OvGige::Endpoint& camera, OvGige::Access access)
            : m_address(socket.Local()),
              m_connection(std::make_unique<OvGige::UdpLink>(std::move(socket), camera),
                           {.access = access,
                            .patience = {},
                            .isAbandoned = [](const OvGige::Endpoint&) { return false; },
                            .pause = [](std::chrono::milliseconds) {},
                            .onLoss = [] {}}) {}

        const OvGige::Endpoint m_address;
        OvGige::CameraConnection m_connection;
    };

    static SimulatedCameras& Cameras() { return dynamic_cast<SimulatedCameras&>(Supply()); }
    static OvSimulator::SimulatedCamera& First() { return Cameras()[0]; }
    static std::string MacOf(size_t index) {
        return OvGige::TextOf(Cameras()[index].Profile().mac);
    }
    static uint64_t Counted(OvSimulator::Count count) { return First().Counts()[count]; }

    /// Opens the first camera again, which has faults from now on.
    void OpenFaulty(OvSimulator::Faults faults) {
        SpoilCameras();
        EXPECT_OV_OK(OVCloseDevice(camera));
        faults.seed = 1;
        Cameras().Replace(0, faults);
        AwaitCameras(kCameras);
        camera = OpenQuick();
    }

    /// A feature of the camera's stream that has no identifier.
    OV_NODE_HANDLE StreamNode(const char* name) const {
        OV_NODE_HANDLE node = 0;
        EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_STREAM, name, &node));
        return node;
    }
    int64_t StreamNumber(const char* name) const {
        int64_t value = 0;
        EXPECT_OV_OK(OvNodeGetInteger(StreamNode(name), &value));
        return value;
    }
    void SetStream(const char* name, int64_t value) const {
        EXPECT_OV_OK(OvNodeSetInteger(StreamNode(name), value));
    }
};

/// Begins without an open camera.
class ClosedGigeCameraTest : public GigeCameraTest {
protected:
    void SetUp() override {
        GigeCameraTest::SetUp();
        EXPECT_OV_OK(OVCloseDevice(camera));
        camera = nullptr;
    }
};
