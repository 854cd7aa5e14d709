#include "GenApi/ChunkAdapterU3V.h"
#include "chunk_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return ChunkFuzz::RunTrailer<GenApi_3_0_ORVANE::CChunkAdapterU3V>({data, size});
}
