// Records of a producer's answers: all of them, some of them, none.

#include "TLClassInfo/Information.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "TLClassInfo/InformationAgency.h"
#include "TLClassInfo/ModuleID.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

using ::testing::ElementsAre;

/// A call of an information function.
struct Asked {
    int32_t command;
    int32_t type;
    /// Of the buffer; 0 for a call without one.
    size_t size;
    bool operator==(const Asked&) const = default;
};

/// Stands for a producer: answers from memory and notes what it was asked.
class ScriptedInformation : public COvInformation {
public:
    template <class Record>
    Record Get() {
        return _GetRecord<Record>();
    }
    template <class T>
    void Answer(int32_t command, const T& value) {
        const auto* const first = reinterpret_cast<const char*>(&value);
        m_answers[command] = std::string(first, sizeof value);
    }
    void AnswerText(int32_t command, const std::string& text) {
        m_answers[command] = std::string(text.c_str(), text.size() + 1);
    }
    /// The size that a call without a buffer returns.
    void LieAboutSize(int32_t command, size_t size) { m_sizes[command] = size; }

    std::vector<Asked> asked;

private:
    int32_t __AcquireInformation(int32_t command, int32_t* type, void* buffer,
                                 size_t* size) override {
        asked.push_back({command, *type, buffer == nullptr ? 0 : *size});
        *type = INT32_MAX;
        const auto found = m_answers.find(command);
        if (found == m_answers.end()) {
            return GenTL::GC_ERR_NOT_AVAILABLE;
        }
        if (buffer == nullptr) {
            *size = m_sizes.count(command) != 0 ? m_sizes[command] : found->second.size();
            return 0;
        }
        std::memcpy(buffer, found->second.data(), std::min(*size, found->second.size()));
        *size = found->second.size();
        return 0;
    }

    std::map<int32_t, std::string> m_answers;
    std::map<int32_t, size_t> m_sizes;
};

TEST(Information, AsksForEachValueWithItsTypeAndSizeInOrder) {
    ScriptedInformation producer;
    producer.Get<BUFFER_INFO>();
    std::vector<Asked> expected = {{8, 1, 0}};
    for (const int32_t command : {1, 9, 10, 11, 12, 13, 14, 15, 18, 19}) {
        expected.push_back({command, 12, 8});
    }
    for (const int32_t command : {3, 16, 20, 21}) {
        expected.push_back({command, 8, 8});
    }
    expected.insert(expected.end(), {{0, 10, 8}, {2, 10, 8}, {7, 11, 1}});
    EXPECT_EQ(producer.asked, expected);
}

TEST(Information, AsksForTheTextsOfASystemModuleWithTheIdAtTheEnd) {
    ScriptedInformation producer;
    producer.Get<TL_INFO>();
    std::vector<int32_t> commands;
    for (const Asked& call : producer.asked) {
        commands.push_back(call.command);
        EXPECT_EQ(call.type, 1);
    }
    EXPECT_THAT(commands, ElementsAre(1, 2, 3, 4, 5, 6, 7, 0));
}

TEST(Information, AsksForATextTwiceWithTheSameType) {
    ScriptedInformation producer;
    producer.AnswerText(12, "Port");
    const auto info = producer.Get<PORT_INFO>();
    EXPECT_EQ(info.portName.value, "Port");
    EXPECT_EQ(producer.asked, (std::vector<Asked>{{0, 1, 0}, {12, 1, 0}, {12, 1, 5}}));
}

TEST(Information, AsksForTheFactsOfAStreamAndOfADevice) {
    ScriptedInformation stream;
    stream.Get<DS_INFO>();
    EXPECT_EQ(stream.asked,
              (std::vector<Asked>{{0, 1, 0}, {7, 12, 8}, {11, 12, 8}, {12, 12, 8}, {13, 12, 8}}));
    ScriptedInformation device;
    device.Get<DEV_INFO>();
    EXPECT_EQ(device.asked, (std::vector<Asked>{
                                {0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {3, 1, 0}, {4, 1, 0}, {5, 5, 4}}));
}

TEST(Information, GoesOnAfterEveryRefusal) {
    ScriptedInformation producer;
    producer.Answer(7, uint8_t{1});
    producer.Answer(16, uint64_t{77});
    const auto info = producer.Get<BUFFER_INFO>();
    EXPECT_TRUE(info.incomplete.valid && info.incomplete.value);
    EXPECT_TRUE(info.frameId.valid);
    EXPECT_EQ(info.frameId.value, 77U);
    EXPECT_FALSE(info.width.valid);
    EXPECT_EQ(info.width.value, 0U);
    EXPECT_FALSE(info.base.valid);
    EXPECT_EQ(info.base.value, nullptr);
}

TEST(Information, TakesAnyByteButZeroForTrue) {
    ScriptedInformation producer;
    producer.Answer(7, uint8_t{0xFF});
    EXPECT_TRUE(producer.Get<BUFFER_INFO>().incomplete.value);
    producer.Answer(7, uint8_t{0});
    EXPECT_FALSE(producer.Get<BUFFER_INFO>().incomplete.value);
    EXPECT_TRUE(producer.Get<BUFFER_INFO>().incomplete.valid);
}

TEST(Information, GivesATextOfSizeZeroBlankAndValid) {
    ScriptedInformation producer;
    producer.AnswerText(0, "Port");
    producer.LieAboutSize(0, 0);
    const auto info = producer.Get<PORT_INFO>();
    EXPECT_TRUE(info.id.valid);
    EXPECT_EQ(info.id.value, "");
}

TEST(Information, EndsATextAtItsFirstZeroByte) {
    ScriptedInformation producer;
    producer.AnswerText(0, std::string("one\0two", 7));
    producer.LieAboutSize(12, 100);
    producer.AnswerText(12, "name");
    const auto info = producer.Get<PORT_INFO>();
    EXPECT_EQ(info.id.value, "one");
    EXPECT_EQ(info.portName.value, "name");
}

TEST(Information, TakesATextWithoutAnEnd) {
    ScriptedInformation producer;
    producer.AnswerText(0, "endless");
    producer.LieAboutSize(0, 3);
    EXPECT_EQ(producer.Get<PORT_INFO>().id.value, "end");
}

TEST(Information, CountsATextThatNoMemoryHoldsAsRefused) {
    ScriptedInformation producer;
    producer.AnswerText(0, "huge");
    producer.AnswerText(12, "name");
    producer.LieAboutSize(0, SIZE_MAX);
    const auto info = producer.Get<PORT_INFO>();
    EXPECT_FALSE(info.id.valid);
    EXPECT_EQ(info.id.value, "");
    EXPECT_EQ(info.portName.value, "name");
}

/// Plays IDs.
class ScriptedID : public CModuleID {
public:
    ScriptedID(size_t size, int32_t lengthStatus, int32_t contentStatus)
        : m_size(size), m_lengthStatus(lengthStatus), m_contentStatus(contentStatus) {}
    int contentCalls = 0;

private:
    int32_t __GetID(char* id, size_t* size) override {
        if (id == nullptr) {
            *size = m_size;
            return m_lengthStatus;
        }
        ++contentCalls;
        std::memcpy(id, "Identity", std::min<size_t>(*size, 9));
        return m_contentStatus;
    }

    size_t m_size;
    int32_t m_lengthStatus;
    int32_t m_contentStatus;
};

TEST(ModuleId, IsTheProducersText) {
    EXPECT_EQ(ScriptedID(9, 0, 0).GetID(), "Identity");
    EXPECT_EQ(ScriptedID(20, 0, 0).GetID(), "Identity");
    EXPECT_EQ(ScriptedID(2, 0, 0).GetID(), "Id");
}

TEST(ModuleId, IsBlankWhenACallFails) {
    EXPECT_EQ(ScriptedID(9, GenTL::GC_ERR_IO, 0).GetID(), "");
    EXPECT_EQ(ScriptedID(9, 0, GenTL::GC_ERR_IO).GetID(), "");
    EXPECT_EQ(ScriptedID(SIZE_MAX, 0, 0).GetID(), "");
}

TEST(ModuleId, OfLengthZeroIsNotAskedFor) {
    ScriptedID id(0, 0, 0);
    EXPECT_EQ(id.GetID(), "");
    EXPECT_EQ(id.contentCalls, 0);
}

/// Queries of a producer with two interfaces, of which the first has two devices.
class InformationOfAProducer : public ProducerTest {
protected:
    void SetUp() override {
        producer.SetInterfaceCount(2);
        producer.SetDeviceCount(0, 2);
        lib.GCInitLib();
        lib.TLOpen(&tl);
        GenTL::bool8_t changed = 0;
        lib.TLUpdateInterfaceList(tl, &changed, 0);
        lib.TLOpenInterface(tl, "TestInterface0", &iface);
        lib.IFUpdateDeviceList(iface, &changed, 0);
    }
    void TearDown() override {
        if (device != nullptr) {
            lib.DevClose(device);
        }
        lib.IFClose(iface);
        lib.TLClose(tl);
        lib.GCCloseLib();
    }
    void OpenDevice() {
        lib.IFOpenDevice(iface, "TestCamera0_0", GenTL::DEVICE_ACCESS_CONTROL, &device);
    }

    const CGenTLLib lib{Staged(m_fileName)};
    void* tl = nullptr;
    void* iface = nullptr;
    void* device = nullptr;
};

TEST_F(InformationOfAProducer, IsTheSameFromTheHandleAndWithoutIt) {
    const TL_INFO empty = COvInformationAgency::GetTLInformationFromEmpty(lib);
    const TL_INFO open = COvInformationAgency::GetTLInformationFromHandle(lib, tl);
    EXPECT_EQ(empty.id.value, "OvTest_Custom");
    EXPECT_EQ(open.id.value, "OvTest_Custom");
    EXPECT_EQ(empty.pathName.value, open.pathName.value);
}

TEST_F(InformationOfAProducer, HoldsAllInterfacesInOrder) {
    const auto all = COvInformationAgency::GetAllInterfaceInformationOfTL(lib, tl);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].id.value, "TestInterface0");
    EXPECT_EQ(all[1].id.value, "TestInterface1");
    EXPECT_EQ(all[1].displayName.value, "Test Interface 1");
    EXPECT_EQ(all[1].tlType.value, "Custom");
    EXPECT_EQ(COvInformationAgency::GetInterfaceInformationFromHandle(lib, iface).id.value,
              "TestInterface0");
}

TEST_F(InformationOfAProducer, HoldsAllDevicesInOrder) {
    const auto all = COvInformationAgency::GetAllDeviceInformationOfInterface(lib, iface);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].id.value, "TestCamera0_0");
    EXPECT_EQ(all[1].id.value, "TestCamera0_1");
    EXPECT_EQ(all[1].vendor.value, "oviapi");
    EXPECT_EQ(all[1].model.value, "TestCamera");
    EXPECT_EQ(all[1].accessStatus.value, GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    EXPECT_TRUE(all[1].accessStatus.valid);
}

TEST_F(InformationOfAProducer, OfADeviceThatTellsNothingIsBlankButForTheIdOfTheList) {
    producer.FailCall("IFGetDeviceInfo", 0, GenTL::GC_ERR_NOT_IMPLEMENTED);
    const auto all = COvInformationAgency::GetAllDeviceInformationOfInterface(lib, iface);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].id.value, "TestCamera0_0");
    for (const InfoString* const text :
         {&all[0].id, &all[0].vendor, &all[0].model, &all[0].tlType, &all[0].displayName}) {
        EXPECT_FALSE(text->valid);
    }
    EXPECT_EQ(all[0].vendor.value + all[0].model.value + all[0].tlType.value, "");
    EXPECT_FALSE(all[0].accessStatus.valid);
    EXPECT_EQ(all[0].accessStatus.value, 0);
}

TEST_F(InformationOfAProducer, KeepsADeviceWhoseIdIsRefused) {
    producer.FailCall("IFGetDeviceID", 1, GenTL::GC_ERR_IO);
    const auto all = COvInformationAgency::GetAllDeviceInformationOfInterface(lib, iface);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].id.value, "");
    EXPECT_EQ(all[1].id.value, "TestCamera0_1");
}

TEST_F(InformationOfAProducer, FailsWithTheCount) {
    producer.FailCall("TLGetNumInterfaces", 1, GenTL::GC_ERR_IO);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Planned failure of TLGetNumInterfaces",
                      COvInformationAgency::GetAllInterfaceInformationOfTL(lib, tl));
    producer.FailCall("IFGetNumDevices", 1, GenTL::GC_ERR_TIMEOUT);
    EXPECT_RAISES(CTimeoutError, "Planned failure of IFGetNumDevices",
                  COvInformationAgency::GetAllDeviceInformationOfInterface(lib, iface));
    OpenDevice();
    producer.FailCall("DevGetNumDataStreams", 1, GenTL::GC_ERR_CUSTOM_ID);
    EXPECT_RAISES(CDeviceOfflineError, "Planned failure of DevGetNumDataStreams",
                  COvInformationAgency::GetAllDataStreamIDOfDevice(lib, device));
}

TEST_F(InformationOfAProducer, HoldsAllStreamsInOrder) {
    producer.SetStreamNumber(0, 0, "Count", 3);
    OpenDevice();
    EXPECT_THAT(COvInformationAgency::GetAllDataStreamIDOfDevice(lib, device),
                ElementsAre("Stream0", "Stream1", "Stream2"));
    EXPECT_EQ(COvInformationAgency::GetDeviceInformationFromHandle(lib, device).id.value,
              "TestCamera0_0");
}

TEST_F(InformationOfAProducer, HoldsWhatAStreamNeeds) {
    producer.SetStreamNumber(0, 0, "AnnounceMinimum", 4);
    producer.SetStreamNumber(0, 0, "Alignment", 512);
    producer.SetStreamNumber(0, 0, "ChunksMax", 7);
    OpenDevice();
    void* stream = nullptr;
    lib.DevOpenDataStream(device, "Stream0", &stream);
    const DS_INFO info = COvInformationAgency::GetDataStreamInformationFromHandle(lib, stream);
    EXPECT_EQ(info.id.value, "Stream0");
    EXPECT_FALSE(info.payloadSize.valid);
    EXPECT_EQ(info.minAnnounce.value, 4U);
    EXPECT_EQ(info.alignment.value, 512U);
    EXPECT_EQ(info.maxChunks.value, 7U);
    EXPECT_TRUE(info.minAnnounce.valid && info.alignment.valid && info.maxChunks.valid);
    lib.DSClose(stream);
}

TEST_F(InformationOfAProducer, HoldsTheNameOfAPort) {
    const PORT_INFO info = COvInformationAgency::GetPortInformationFromHandle(lib, iface);
    EXPECT_EQ(info.id.value, "TestInterface0");
    EXPECT_EQ(info.portName.value, "InterfacePort");
}

TEST(InformationOfAnEmptyLibrary, IsBlank) {
    const CGenTLLib lib(Staged("Empty.cti"));
    EXPECT_FALSE(COvInformationAgency::GetTLInformationFromEmpty(lib).id.valid);
    EXPECT_UNEXPECTED(-1, "The TL library is not complete",
                      COvInformationAgency::GetAllInterfaceInformationOfTL(lib, nullptr));
}

}  // namespace
}  // namespace OVTLClass
