#pragma once
/// Connections to cameras by way of an adapter.

#include <functional>
#include <memory>

#include "gige/device/CameraConnection.h"
#include "gige/discovery/FoundCameras.h"
#include "gige/net/AdapterWatch.h"

namespace OvGige {

/// The patience with a camera that is open.
constexpr Patience kUsualPatience{.timeout = std::chrono::milliseconds{500}, .tries = 3};

/// Takes a camera.
/// @param onLoss  as `ConnectionOptions::onLoss`
/// @throws OvProducer::Failure as the constructor of `CameraConnection`; the text says so if the
///         camera's address belongs to another subnet
std::shared_ptr<CameraConnection> ConnectTo(const Adapter& adapter, const FoundCamera& camera,
                                            Access access, std::function<void()> onLoss);

/// Reports the camera as lost as soon as the adapter is down or has another address. Null if the
/// system doesn't tell: then only the camera's silence does.
std::unique_ptr<AdapterWatch> WatchAdapter(const Adapter& adapter,
                                           const std::shared_ptr<CameraConnection>& connection);

}  // namespace OvGige
