#include "virtual/CameraSelectors.h"

#include "virtual/CameraEvents.h"
#include "virtual/CameraFiles.h"
#include "virtual/CameraState.h"
#include "virtual/Chunks.h"

namespace OvVirtual {
namespace {

using S = CameraSelectors;

template <class Choices>
constexpr std::int64_t kLast = static_cast<std::int64_t>(Choices::Count) - 1;

constexpr SelectorRegister kSelectors[] = {
    {0x0200, &S::temperature, 1},
    {0x0440, &S::status, 1},
    {0x0508, &S::balance, 2},
    {0x0604, &S::lutIndex, kTopLevel},
    {0x0700, &S::userSet, CameraState::kUserSets - 1},
    {0x080C, &S::chunk, kChunks - 1},
    {0x0900, &S::file, kLast<FileName>},
    {0x0904, &S::fileOperation, kLast<FileOperation>},
    {0x0A00, &S::event, kCameraEvents - 1},
};

}  // namespace

std::span<const SelectorRegister> SelectorRegisters() {
    return kSelectors;
}

}  // namespace OvVirtual
