#include "gige/net/CameraSocket.h"

namespace OvGige {

UdpSocket MakeCameraSocket(const Adapter& adapter) {
    UdpSocket socket;
    // Without the right to it, the routes decide.
    static_cast<void>(socket.BindToDevice(adapter.name));
    socket.Bind({adapter.ip, 0});
    return socket;
}

}  // namespace OvGige
