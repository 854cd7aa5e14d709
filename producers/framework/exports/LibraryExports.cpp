/// @file
/// `GC...` functions that belong to the producer as a whole, and the events.
#include "Base/EachFrame.h"
#include "framework/exports/Serve.h"

using namespace OvProducer;
using GenTL::GC_ERROR;

OV_PRODUCER_EXPORT GCInitLib() {
    return Serve(Function::GCInitLib, [] { Library::Instance().Init(); });
}

OV_PRODUCER_EXPORT GCCloseLib() {
    return Serve(Function::GCCloseLib, [] { Library::Instance().Close(); });
}

OV_PRODUCER_EXPORT GCGetInfo(GenTL::TL_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL) {
    return Serve(Function::GCGetInfo, [&] {
        Observer().Ask(Function::GCGetInfo, iInfoCmd);
        Answer(Function::GCGetInfo, ProducerInfo(Library::Instance().Facts(), iInfoCmd),
               {piType, pBuffer, piSize});
    });
}

OV_PRODUCER_EXPORT GCGetLastError(GC_ERROR* piErrorCode, char* sErrorText, size_t* piSize) {
    // Read first and stored again at the end: a failure of this call must not replace the one that
    // it returns.
    const LastError last = ReadLastError();
    const std::string text = last.text;
    const GC_ERROR code = last.code;
    const GC_ERROR result = Serve(Function::GCGetLastError, [&] {
        Answer(Function::GCGetLastError, InfoValue::Text(text), {nullptr, sErrorText, piSize});
        if (piErrorCode != nullptr) {
            *piErrorCode = code;
        }
    });
    StoreLastError(code, text);
    return result;
}

OV_PRODUCER_EXPORT GCRegisterEvent(GenTL::EVENTSRC_HANDLE hEventSrc, GenTL::EVENT_TYPE iEventID,
                                   GenTL::EVENT_HANDLE* phEvent) {
    return ServeOn<Module>(Function::GCRegisterEvent, hEventSrc, [&](Module& module) {
        RequirePointer(phEvent, "The result pointer");
        Put(phEvent, module.RegisterEvent(iEventID)->Handle());
    });
}

OV_PRODUCER_EXPORT GCUnregisterEvent(GenTL::EVENTSRC_HANDLE hEventSrc, GenTL::EVENT_TYPE iEventID) {
    return ServeOn<Module>(Function::GCUnregisterEvent, hEventSrc,
                           [&](Module& module) { module.UnregisterEvent(iEventID); });
}

OV_PRODUCER_EXPORT OV_EACH_FRAME EventGetData(GenTL::EVENT_HANDLE hEvent, void* pBuffer,
                                              size_t* piSize, uint64_t iTimeout) {
    return ServeOn<Event>(Function::EventGetData, hEvent,
                          [&](Event& event) { event.GetData(pBuffer, piSize, iTimeout); });
}

OV_PRODUCER_EXPORT EventGetDataInfo(GenTL::EVENT_HANDLE hEvent, const void* pInBuffer,
                                    size_t iInSize, GenTL::EVENT_DATA_INFO_CMD iInfoCmd,
                                    GenTL::INFO_DATATYPE* piType, void* pOutBuffer,
                                    size_t* piOutSize) {
    return ServeInfo<Event>(Function::EventGetDataInfo, hEvent, iInfoCmd,
                            {piType, pOutBuffer, piOutSize}, [&](const Event& event) {
                                RequirePointer(pInBuffer, "The event data");
                                const auto* first = static_cast<const std::byte*>(pInBuffer);
                                return event.DataInfo({first, iInSize}, iInfoCmd);
                            });
}

OV_PRODUCER_EXPORT EventGetInfo(GenTL::EVENT_HANDLE hEvent, GenTL::EVENT_INFO_CMD iInfoCmd,
                                OV_GENTL_INFO_TAIL) {
    return ServeInfo<Event>(Function::EventGetInfo, hEvent, iInfoCmd, {piType, pBuffer, piSize},
                            [&](const Event& event) { return event.Info(iInfoCmd); });
}

OV_PRODUCER_EXPORT EventFlush(GenTL::EVENT_HANDLE hEvent) {
    return ServeOn<Event>(Function::EventFlush, hEvent, [](Event& event) { event.Flush(); });
}

OV_PRODUCER_EXPORT EventKill(GenTL::EVENT_HANDLE hEvent) {
    return ServeOn<Event>(Function::EventKill, hEvent, [](Event& event) { event.Kill(); });
}
