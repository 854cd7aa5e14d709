#include "TLClassStream/DataStreamFactory.h"

#include "TLClassStream/DataStream.h"

namespace OVTLClass {

std::unique_ptr<IDataStream> CDataStreamFactory::CreateDataStream(
    std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IDevice> device, void* deviceHandle,
    const std::string& streamId) {
    return std::make_unique<CDataStream>(std::move(lib), std::move(device), deviceHandle, streamId);
}

}  // namespace OVTLClass
