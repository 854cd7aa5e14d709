#include "gige/net/CameraSocket.h"

namespace OvGige {

UdpSocket MakeCameraSocket(const Adapter& adapter) {
    UdpSocket socket;
    // Without the right to it, the routes decide.
    static_cast<void>(socket.BindToDevice(adapter.name));
    socket.Bind({adapter.ip, 0});
    return socket;
}

UdpSocket MakeBroadcastSocket(const Adapter& adapter) {
    // Answers of a few hundred cameras come at once.
    constexpr size_t kReceiveBuffer = 1 << 20;
    UdpSocket socket;
    static_cast<void>(socket.BindToDevice(adapter.name));
    socket.AllowBroadcast();
    socket.SetReceiveBuffer(kReceiveBuffer);
    socket.Bind({});
    return socket;
}

}  // namespace OvGige
