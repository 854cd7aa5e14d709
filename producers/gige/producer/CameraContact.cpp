#include "gige/producer/CameraContact.h"

#include <algorithm>
#include <thread>

#include "framework/Failure.h"
#include "gige/net/CameraSocket.h"
#include "gige/net/UdpLink.h"

namespace OvGige {
namespace {

using OvProducer::Failure;
using OvProducer::LogWarning;

/// Whether a camera's owner was a process of this machine that has ended: then its port is free.
bool IsGoneProcess(const Endpoint& owner) {
    try {
        const std::vector<Adapter> adapters = AllAdapters();
        const bool isHere =
            std::any_of(adapters.begin(), adapters.end(),
                        [&owner](const Adapter& adapter) { return adapter.ip == owner.ip; });
        if (!isHere || owner.port == 0) {
            return false;
        }
        UdpSocket port;
        port.Bind(owner);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

/// A camera of another subnet hears broadcasts and nothing else.
std::string Hint(const Adapter& adapter, const FoundCamera& camera) {
    const Ipv4 ip = camera.identity.ip;
    if (camera.isNamed || IsSameSubnet(ip, adapter.ip, adapter.mask)) {
        return {};
    }
    return "; its address " + TextOf(ip) + " doesn't belong to the subnet of " + adapter.name +
           " (" + TextOf(adapter.ip) + "): force one that does";
}

bool IsThere(const Adapter& adapter) {
    const std::vector<Adapter> adapters = AllAdapters();
    return std::any_of(adapters.begin(), adapters.end(), [&adapter](const Adapter& other) {
        return other.name == adapter.name && other.ip == adapter.ip;
    });
}

}  // namespace

std::shared_ptr<CameraConnection> ConnectTo(const Adapter& adapter, const FoundCamera& camera,
                                            Access access, std::function<void()> onLoss) {
    try {
        return std::make_shared<CameraConnection>(
            std::make_unique<UdpLink>(MakeCameraSocket(adapter), camera.endpoint),
            ConnectionOptions{.access = access,
                              .patience = kUsualPatience,
                              .isAbandoned = IsGoneProcess,
                              .pause = [](auto time) { std::this_thread::sleep_for(time); },
                              .onLoss = std::move(onLoss)});
    } catch (const Failure& failure) {
        if (failure.Code() != GenTL::GC_ERR_TIMEOUT && failure.Code() != GenTL::GC_ERR_IO) {
            throw;
        }
        throw Failure(failure.Code(), failure.what() + Hint(adapter, camera));
    }
}

std::unique_ptr<AdapterWatch> WatchAdapter(const Adapter& adapter,
                                           const std::shared_ptr<CameraConnection>& connection) {
    const auto look = [adapter, weak = std::weak_ptr(connection)] {
        try {
            const auto camera = weak.lock();
            if (camera && !IsThere(adapter)) {
                camera->Lose("The adapter " + adapter.name + " with the address " +
                             TextOf(adapter.ip) + " is down");
            }
        } catch (const Failure& failure) {
            LogWarning(failure.what());
        }
    };
    try {
        return std::make_unique<AdapterWatch>(look);
    } catch (const Failure& failure) {
        LogWarning(failure.what());
        return nullptr;
    }
}

}  // namespace OvGige
