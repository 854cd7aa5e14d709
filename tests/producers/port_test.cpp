/// @file Ports: registers, stacked accesses, and the descriptions of the URLs.
#include <zlib.h>

#include <cstring>

#include "TestProducerFixture.h"

namespace {

class Ports : public TestProducerTest {
protected:
    Ports() { camera.OpenStream(); }

    std::string Url(GenTL::PORT_HANDLE port, std::uint32_t index = 0) {
        return GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
            return api.GCGetPortURLInfo(port, index, GenTL::URL_INFO_URL, type, out, size);
        });
    }
    template <typename T>
    T UrlNumber(GenTL::PORT_HANDLE port, GenTL::URL_INFO_CMD command) {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return api.GCGetPortURLInfo(port, 0, command, type, out, size);
        });
    }
    std::string PortText(GenTL::PORT_HANDLE port, GenTL::PORT_INFO_CMD command) {
        return GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
            return api.GCGetPortInfo(port, command, type, out, size);
        });
    }
    std::string File(GenTL::PORT_HANDLE port) {
        std::string file(UrlNumber<std::uint64_t>(port, GenTL::URL_INFO_FILE_SIZE), '\0');
        std::size_t size = file.size();
        EXPECT_EQ(api.GCReadPort(
                      port, UrlNumber<std::uint64_t>(port, GenTL::URL_INFO_FILE_REGISTER_ADDRESS),
                      file.data(), &size),
                  0);
        return file;
    }
};

TEST_F(Ports, EachModuleNamesItself) {
    const struct {
        GenTL::PORT_HANDLE port;
        const char* module;
        const char* name;
    } expected[] = {{camera.system, "TLSystem", "TLPort"},
                    {camera.iface, "TLInterface", "InterfacePort"},
                    {camera.device, "TLDevice", "DevicePort"},
                    {camera.stream, "TLDataStream", "StreamPort"},
                    {camera.port, "Device", "Device"}};
    for (const auto& entry : expected) {
        EXPECT_EQ(PortText(entry.port, GenTL::PORT_INFO_MODULE), entry.module);
        EXPECT_EQ(PortText(entry.port, GenTL::PORT_INFO_PORTNAME), entry.name);
    }
}

TEST_F(Ports, EachModuleServesItsDescription) {
    for (const GenTL::PORT_HANDLE port :
         {camera.system, camera.iface, camera.device, camera.stream}) {
        std::uint32_t count = 0;
        ASSERT_EQ(api.GCGetNumPortURLs(port, &count), 0);
        EXPECT_EQ(count, 1U);
        const std::string file = File(port);
        EXPECT_EQ(file.rfind("<?xml", 0), 0U);
        EXPECT_NE(file.find("</RegisterDescription>"), std::string::npos);
        EXPECT_NE(file.find("Port Name=\"" + PortText(port, GenTL::PORT_INFO_PORTNAME)),
                  std::string::npos);
    }
}

TEST_F(Ports, UrlTellsPlaceAndLength) {
    const std::uint64_t length = File(camera.stream).size();
    char expected[100];
    std::snprintf(expected, sizeof expected,
                  "Local:OvStream_1_0_0.xml;10000;%llX?SchemaVersion=1.1.0",
                  static_cast<unsigned long long>(length));
    EXPECT_EQ(Url(camera.stream), expected);
    EXPECT_EQ(UrlNumber<std::int32_t>(camera.stream, GenTL::URL_INFO_SCHEMA_VER_MINOR), 1);
    EXPECT_EQ(UrlNumber<std::int32_t>(camera.stream, GenTL::URL_INFO_SCHEME),
              GenTL::URL_SCHEME_LOCAL);
}

TEST_F(Ports, UrlListOfTheOldFormEndsWithTwoNuls) {
    std::size_t size = 0;
    ASSERT_EQ(api.GCGetPortURL(camera.stream, nullptr, &size), 0);
    std::string list(size, 'x');
    ASSERT_EQ(api.GCGetPortURL(camera.stream, list.data(), &size), 0);
    EXPECT_EQ(list, Url(camera.stream) + std::string(2, '\0'));
}

TEST_F(Ports, UrlIndexBeyondTheEndIsRefused) {
    std::size_t size = 0;
    EXPECT_EQ(api.GCGetPortURLInfo(camera.port, 1, GenTL::URL_INFO_URL, nullptr, nullptr, &size),
              GenTL::GC_ERR_INVALID_INDEX);
}

TEST_F(Ports, ZippedDescriptionInflatesByItsLocalHeader) {
    const std::string file = File(camera.port);
    const auto field = [&](std::size_t offset, unsigned bytes) {
        std::uint32_t value = 0;
        std::memcpy(&value, file.data() + offset, bytes);
        return value;
    };
    ASSERT_EQ(field(0, 4), 0x04034B50U);
    const std::uint32_t packed = field(18, 4);
    std::string xml(field(22, 4), '\0');
    const std::size_t start = 30 + field(26, 2) + field(28, 2);
    z_stream stream{};
    ASSERT_EQ(inflateInit2(&stream, -8), Z_OK);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(file.data() + start));
    stream.avail_in = packed;
    stream.next_out = reinterpret_cast<Bytef*>(xml.data());
    stream.avail_out = static_cast<uInt>(xml.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    EXPECT_EQ(stream.total_out, xml.size());
    inflateEnd(&stream);
    EXPECT_EQ(xml.rfind("<?xml", 0), 0U);
}

TEST_F(Ports, WrittenRegisterReadsBack) {
    camera.WriteRegister<std::uint32_t>(0x0408, 8);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0x0408), 8U);
}

TEST_F(Ports, AddressWithoutARegisterIsRefused) {
    std::uint32_t value = 0;
    std::size_t size = sizeof value;
    EXPECT_EQ(api.GCReadPort(camera.port, 0x40000000, &value, &size),
              GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(api.GCWritePort(camera.port, 0x40000000, &value, &size),
              GenTL::GC_ERR_INVALID_ADDRESS);
}

TEST_F(Ports, DescriptionCantBeWritten) {
    std::uint32_t value = 0;
    std::size_t size = sizeof value;
    EXPECT_EQ(api.GCWritePort(camera.stream, 0x10000, &value, &size), GenTL::GC_ERR_ACCESS_DENIED);
}

TEST_F(Ports, StackStopsAtTheFirstFailure) {
    std::uint32_t values[3] = {};
    GenTL::S_PORT_REGISTER_STACK_ENTRY entries[] = {
        {0x400, &values[0], 4}, {0x40000000, &values[1], 4}, {0x404, &values[2], 4}};
    std::size_t count = 3;
    EXPECT_EQ(api.GCReadPortStacked(camera.port, entries, &count), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(values[0], 64U);
    EXPECT_EQ(values[2], 0U);
}

TEST_F(Ports, StackIsDoneInOrder) {
    std::uint32_t values[] = {16, 24};
    GenTL::S_PORT_REGISTER_STACK_ENTRY entries[] = {{0x400, &values[0], 4}, {0x400, &values[1], 4}};
    std::size_t count = 2;
    ASSERT_EQ(api.GCWritePortStacked(camera.port, entries, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0x400), 24U);
}

TEST_F(Ports, ModuleRegistersShowTheModule) {
    char id[128];
    std::size_t size = sizeof id;
    ASSERT_EQ(api.GCReadPort(camera.device, 0, id, &size), 0);
    EXPECT_STREQ(id, "TestCamera0_0");
    std::int64_t last = 0;
    size = sizeof last;
    ASSERT_EQ(api.GCReadPort(camera.iface, 0x210, &last, &size), 0);
    EXPECT_EQ(last, 0);
}

TEST_F(Ports, SelectorOfAnEmptyListEndsBelowZero) {
    control.LoseDevice(0, 0);
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, nullptr, 100), 0);
    std::int64_t last = 0;
    std::size_t size = sizeof last;
    ASSERT_EQ(api.GCReadPort(camera.iface, 0x210, &last, &size), 0);
    EXPECT_EQ(last, -1);
}

TEST_F(Ports, SelectorChoosesTheDeviceThatIsShown) {
    control.SetDeviceCount(0, 2);
    ASSERT_EQ(api.IFUpdateDeviceList(camera.iface, nullptr, 100), 0);
    std::int64_t index = 1;
    std::size_t size = sizeof index;
    ASSERT_EQ(api.GCWritePort(camera.iface, 0x208, &index, &size), 0);
    char id[128];
    size = sizeof id;
    ASSERT_EQ(api.GCReadPort(camera.iface, 0x280, id, &size), 0);
    EXPECT_STREQ(id, "TestCamera0_1");
    index = 2;
    size = sizeof index;
    EXPECT_EQ(api.GCWritePort(camera.iface, 0x208, &index, &size), GenTL::GC_ERR_INVALID_VALUE);
}

}  // namespace
