/// @file
/// The stacked buffer query, which only few producers have, and its control functions.
#include "OvTestControl.h"
#include "TestWorld.h"
#include "framework/exports/Serve.h"

using OvTest::TestWorld;

extern "C" {

#define OV_TEST_VISIBLE __attribute__((visibility("default")))

OV_TEST_VISIBLE void OvTest_OfferStack(int on) {
    TestWorld::Instance().offersStack = on != 0;
}

OV_TEST_VISIBLE std::uint64_t OvTest_StackCount() {
    return TestWorld::Instance().stacks;
}

OV_TEST_VISIBLE GenTL::GC_ERROR DSGetBufferInfoStacked(GenTL::DS_HANDLE hDataStream,
                                                       GenTL::BUFFER_HANDLE hBuffer,
                                                       GenTL::DS_BUFFER_INFO_STACKED* pInfoStacked,
                                                       std::size_t iNumInfos) {
    TestWorld& world = TestWorld::Instance();
    if (!world.offersStack) {
        return GenTL::GC_ERR_NOT_IMPLEMENTED;
    }
    ++world.stacks;
    for (std::size_t i = 0; i < iNumInfos; ++i) {
        GenTL::DS_BUFFER_INFO_STACKED& question = pInfoStacked[i];
        GenTL::INFO_DATATYPE type = question.iType;
        std::size_t size = question.iSize;
        question.iResult = DSGetBufferInfo(hDataStream, hBuffer, question.iInfoCmd, &type,
                                           question.pBuffer, &size);
        question.iType = type;
        question.iSize = size;
    }
    return GenTL::GC_ERR_SUCCESS;
}

}  // extern "C"
