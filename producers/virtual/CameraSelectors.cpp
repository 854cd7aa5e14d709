#include "virtual/CameraSelectors.h"

#include "virtual/CameraEvents.h"
#include "virtual/CameraFiles.h"
#include "virtual/CameraState.h"
#include "virtual/Chunks.h"

namespace OvVirtual {
namespace {

using Selectors = CameraSelectors;

template <class Choices>
constexpr int64_t kLast = static_cast<int64_t>(Choices::Count) - 1;

constexpr SelectorRegister kSelectors[] = {
    {0x0200, &Selectors::temperature, 1},
    {0x0440, &Selectors::status, 1},
    {0x0508, &Selectors::balance, 2},
    {0x0604, &Selectors::lutIndex, kTopLevel},
    {0x0700, &Selectors::userSet, CameraState::kUserSets - 1},
    {0x080C, &Selectors::chunk, kChunks - 1},
    {0x0900, &Selectors::file, kLast<FileName>},
    {0x0904, &Selectors::fileOperation, kLast<FileOperation>},
    {0x0A00, &Selectors::event, kCameraEvents - 1},
};

}  // namespace

std::span<const SelectorRegister> SelectorRegisters() {
    return kSelectors;
}

}  // namespace OvVirtual
