// Files in a device: what the adapter asks of the device, step by step, and what
// it makes of the answers.

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>
#include <utility>

#include "BagSupport.h"
#include "GenApi/FileProtocolAdapter.h"
#include "GenApi/IEnumeration.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Line = EngineLog::Line;

// Where the device has its registers.
constexpr int kSelector = 0x00;
constexpr int kOperation = 0x04;
constexpr int kOpenMode = 0x08;
constexpr int kExecute = 0x0C;
constexpr int kOffset = 0x10;
constexpr int kLength = 0x14;
constexpr int kStatus = 0x18;
constexpr int kResult = 0x1C;
constexpr int kBuffer = 0x100;
constexpr int kBufferLength = 16;

constexpr char kLog[] = "FileStream.Device.Misc.FileProtocolAdapter";
constexpr auto kRead = std::ios_base::in;
constexpr auto kWrite = std::ios_base::out;

/// Keeps a file and works on it when the execute register is written.
class FileDevice : public TestPort {
public:
    /// An answer that the device gives instead of the honest one.
    struct Answer {
        int32_t result;
        int32_t status = 0;
    };

    void Read(void* buffer, int64_t address, int64_t length) override {
        TestPort::Read(buffer, address, length);
        if (address == kExecute && busyPolls != 0 && --busyPolls == 0) {
            Put(kExecute, 0);
        }
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        if (address == kExecute && isGone) {
            throw std::runtime_error("The device is gone");
        }
        TestPort::Write(buffer, address, length);
        if (address == kExecute) {
            Execute();
        }
    }

    std::string content;
    /// For the next operations, one each.
    std::deque<Answer> answers;
    /// How often the device is still at work when it is asked.
    int busyPolls = 0;
    bool isGone = false;
    /// What was executed: "Open 1 Write", "Read 0 16+4".
    std::vector<std::string> operations;

private:
    void Execute() {
        static const char* const kNames[] = {"Open", "Close", "Read", "Write", "Delete"};
        const auto operation = Peek<uint32_t>(kOperation);
        std::string text = kNames[operation] + (" " + std::to_string(Peek<int32_t>(kSelector)));
        if (operation == 0) {
            text += Peek<int32_t>(kOpenMode) == 0 ? " Read" : " Write";
        } else if (operation == 2 || operation == 3) {
            text += " " + std::to_string(Peek<int32_t>(kOffset)) + "+" +
                    std::to_string(Peek<int32_t>(kLength));
        }
        operations.push_back(text);
        Answer answer{operation == 2 || operation == 3 ? Room(operation == 3) : 0};
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        if (operation == 2 || operation == 3) {
            Move(operation == 3, std::min<int32_t>(answer.result, kBufferLength));
        }
        Put(kResult, answer.result);
        Put(kStatus, answer.status);
        Put(kExecute, busyPolls == 0 ? 0 : 1);
    }

    int32_t Room(bool isWrite) {
        const auto length = Peek<int32_t>(kLength);
        const int32_t left = static_cast<int32_t>(content.size()) - Peek<int32_t>(kOffset);
        return isWrite ? length : std::clamp(left, 0, length);
    }

    void Move(bool isWrite, int32_t count) {
        const auto offset = static_cast<size_t>(Peek<int32_t>(kOffset));
        for (size_t i = 0; static_cast<int32_t>(i) < count; ++i) {
            const int64_t address = kBuffer + static_cast<int64_t>(i);
            if (isWrite) {
                content.resize(std::max(content.size(), offset + i + 1));
                content[offset + i] = Peek<char>(address);
            } else {
                Put(address, offset + i < content.size() ? content[offset + i] : '?');
            }
        }
    }
};

/// A register without cache, and a feature that shows it.
std::string FeatureXml(const std::string& tag, const std::string& name, int address,
                       const std::string& head = "", const std::string& tail = "") {
    const RegXml reg{.name = name + "Reg", .address = address, .caching = "NoCache"};
    return NodeXml(tag, name, head + Element("pValue", name + "Reg") + tail) + reg();
}

std::string EntriesXml(std::initializer_list<const char*> symbolics) {
    std::string entries;
    int value = 0;
    for (const char* const symbolic : symbolics) {
        entries += NodeXml("EnumEntry", symbolic, Element("Value", std::to_string(value++)));
    }
    return entries;
}

struct DeviceOptions {
    int bufferLength = kBufferLength;
    int lengthMax = 1000;
};

/// The nodes of such a device by name, in the order in which they are looked up.
std::vector<std::pair<std::string, std::string>> FileNodes(const DeviceOptions& options = {}) {
    const std::string limits = Element("Min", "0") + Element("Max", "1000");
    const std::string lengthLimits =
        Element("Min", "0") + Element("Max", std::to_string(options.lengthMax));
    const std::string buffer =
        Element("Address", std::to_string(kBuffer)) +
        Element("Length", std::to_string(options.bufferLength)) +
        "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>";
    return {
        {"FileSelector", FeatureXml("Enumeration", "FileSelector", kSelector,
                                    EntriesXml({"UserSet", "Calibration"}))},
        {"FileOperationSelector",
         FeatureXml("Enumeration", "FileOperationSelector", kOperation,
                    EntriesXml({"Open", "Close", "Read", "Write", "Delete"}))},
        {"FileOperationExecute",
         FeatureXml("Command", "FileOperationExecute", kExecute, "", Element("CommandValue", "1"))},
        {"FileOpenMode",
         FeatureXml("Enumeration", "FileOpenMode", kOpenMode, EntriesXml({"Read", "Write"}))},
        {"FileAccessOffset", FeatureXml("Integer", "FileAccessOffset", kOffset, "", limits)},
        {"FileAccessLength", FeatureXml("Integer", "FileAccessLength", kLength, "", lengthLimits)},
        {"FileAccessBuffer", NodeXml("Register", "FileAccessBuffer", buffer)},
        {"FileOperationStatus", FeatureXml("Enumeration", "FileOperationStatus", kStatus,
                                           EntriesXml({"Success", "Failure"}))},
        {"FileOperationResult", FeatureXml("Integer", "FileOperationResult", kResult)},
    };
}

std::string Joined(const std::vector<std::pair<std::string, std::string>>& nodes) {
    std::string body;
    for (const auto& [name, xml] : nodes) {
        body += xml;
    }
    return body;
}

class FileProtocol : public testing::Test {
protected:
    void Attach(const DeviceOptions& options = {}) {
        m_pNodes = std::make_unique<XmlNodeMap>(Joined(FileNodes(options)));
        m_pNodes->Map().Connect(&m_Device);
        ASSERT_TRUE(m_Adapter.attach(&m_pNodes->Map()));
    }
    std::string ReadFile(int64_t offset, int64_t length) {
        std::string bytes(static_cast<size_t>(length), '.');
        const int64_t count = m_Adapter.read(bytes.data(), offset, length, "UserSet");
        return std::to_string(count) + ":" + bytes;
    }
    int64_t WriteFile(int64_t offset, const std::string& text) {
        // Memory that ends with the text, for the sanitizer to watch.
        const std::vector<char> bytes(text.begin(), text.end());
        return m_Adapter.write(bytes.data(), offset, static_cast<int64_t>(bytes.size()), "UserSet");
    }
    /// The writes that arrived, as address and length.
    std::vector<std::pair<int64_t, int64_t>> Writes() const {
        std::vector<std::pair<int64_t, int64_t>> writes;
        for (const TestPort::Access& access : m_Device.GetAccesses()) {
            if (access.isWrite) {
                writes.emplace_back(access.address, access.length);
            }
        }
        return writes;
    }

    EngineLog m_Log;
    FileDevice m_Device;
    std::unique_ptr<XmlNodeMap> m_pNodes;
    FileProtocolAdapter m_Adapter;
};

// Attaching.

TEST_F(FileProtocol, NeedsAMap) {
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Adapter.attach(nullptr); }),
              "Called FileProtocolAdapter::attach with pInterface == NULL");
}

TEST_F(FileProtocol, FindsTheNodesOfADevice) {
    Attach();
    EXPECT_TRUE(m_Log.HasLogger(kLog));
    EXPECT_THAT(m_Log.Lines(kLog), IsEmpty());
    EXPECT_THAT(m_Device.GetAccesses(), IsEmpty());
}

TEST_F(FileProtocol, TellsOfAllThatIsMissing) {
    XmlNodeMap nodes("");
    EXPECT_FALSE(m_Adapter.attach(&nodes.Map()));
    EXPECT_THAT(m_Log.Texts(kLog),
                ElementsAre("FileSelector invalid\n", "FileOperationSelector invalid\n",
                            "FileOperationExecute invalid\n", "FileOpenMode invalid\n",
                            "FileAccessOffset invalid\n", "FileAccessLength invalid\n",
                            "FileAccessBuffer invalid\n", "FileOperationStatus invalid\n",
                            "FileOperationResult invalid\n"));
}

TEST_F(FileProtocol, LogsForADeviceWithoutAName) {
    NodesByHand nodes("");
    nodes.Complete();
    EXPECT_FALSE(m_Adapter.attach(&nodes.Map()));
    EXPECT_EQ(m_Log.Lines("FileStream.NO_DEVICE.Misc.FileProtocolAdapter").size(), 9U);
}

TEST_F(FileProtocol, HasNoLoggerWhereNoneIsWanted) {
    m_Log.SetExists(false);
    XmlNodeMap nodes("");
    EXPECT_FALSE(m_Adapter.attach(&nodes.Map()));
    EXPECT_FALSE(m_Log.HasLogger(kLog));
}

TEST_F(FileProtocol, DoesNothingWithoutADevice) {
    char byte = 'x';
    EXPECT_FALSE(m_Adapter.openFile("UserSet", kRead));
    EXPECT_FALSE(m_Adapter.closeFile("UserSet"));
    EXPECT_FALSE(m_Adapter.deleteFile("UserSet"));
    EXPECT_EQ(m_Adapter.read(&byte, 0, 1, "UserSet"), 0);
    EXPECT_EQ(m_Adapter.write(&byte, 0, 1, "UserSet"), 0);
    EXPECT_EQ(m_Adapter.getBufSize("UserSet", kRead), 0);
    EXPECT_EQ(byte, 'x');
}

TEST_F(FileProtocol, LeavesTheDeviceBeforeForTheNext) {
    Attach();
    XmlNodeMap nodes("");
    EXPECT_FALSE(m_Adapter.attach(&nodes.Map()));
    EXPECT_FALSE(m_Adapter.openFile("UserSet", kRead));
    EXPECT_THAT(m_Device.GetAccesses(), IsEmpty());
}

/// Each node in turn, by its place.
class FileProtocolNode : public FileProtocol, public testing::WithParamInterface<size_t> {
protected:
    /// Attaches with another node, or none, in the place of the one.
    void ExpectRefused(const std::string& replacement) {
        auto nodes = FileNodes();
        nodes[GetParam()].second = replacement;
        m_pNodes = std::make_unique<XmlNodeMap>(Joined(nodes));
        m_pNodes->Map().Connect(&m_Device);
        EXPECT_FALSE(m_Adapter.attach(&m_pNodes->Map()));
        EXPECT_THAT(m_Log.Lines(kLog), ElementsAre(Line{LogWarning, Name() + " invalid\n"}));
        EXPECT_FALSE(m_Adapter.openFile("UserSet", kRead));
        EXPECT_EQ(m_Adapter.getBufSize("UserSet", kRead), 0);
        EXPECT_THAT(m_Device.GetAccesses(), IsEmpty());
    }
    static std::string Name() { return FileNodes()[GetParam()].first; }
};

TEST_P(FileProtocolNode, IsNeeded) {
    ExpectRefused("");
}

TEST_P(FileProtocolNode, HasItsInterface) {
    ExpectRefused(NodeXml("Float", Name(), Element("Value", "1")));
}

INSTANTIATE_TEST_SUITE_P(Each, FileProtocolNode, testing::Range<size_t>(0, 9),
                         [](const auto& node) { return FileNodes()[node.param].first; });

// Opening, closing, deleting.

TEST_F(FileProtocol, OpensInOrder) {
    Attach();
    EXPECT_TRUE(m_Adapter.openFile("Calibration", kWrite));
    EXPECT_THAT(m_Device.operations, ElementsAre("Open 1 Write"));
    EXPECT_THAT(Writes(), ElementsAre(std::pair(kSelector, 4), std::pair(kOpenMode, 4),
                                      std::pair(kOperation, 4), std::pair(kExecute, 4)));
}

TEST_F(FileProtocol, OpensForWritingWhenThatIsAskedForAndElseForReading) {
    Attach();
    for (const auto mode : {kRead, kWrite, kRead | kWrite, kWrite | std::ios_base::binary,
                            std::ios_base::binary, std::ios_base::openmode()}) {
        EXPECT_TRUE(m_Adapter.openFile("UserSet", mode));
    }
    EXPECT_THAT(m_Device.operations, ElementsAre("Open 0 Read", "Open 0 Write", "Open 0 Write",
                                                 "Open 0 Write", "Open 0 Read", "Open 0 Read"));
}

TEST_F(FileProtocol, TellsThatAFileDoesNotOpenAndLeavesTheStatus) {
    Attach();
    m_Device.answers = {{.result = 0, .status = 1}};
    EXPECT_FALSE(m_Adapter.openFile("UserSet", kRead));
    EXPECT_EQ(m_pNodes->Get<IEnumeration>("FileOperationStatus").ToString(), "Failure");
}

TEST_F(FileProtocol, ClosesAndDeletes) {
    Attach();
    EXPECT_TRUE(m_Adapter.closeFile("UserSet"));
    EXPECT_TRUE(m_Adapter.deleteFile("Calibration"));
    m_Device.answers = {{.result = 0, .status = 1}, {.result = 0, .status = 1}};
    EXPECT_FALSE(m_Adapter.closeFile("Calibration"));
    EXPECT_FALSE(m_Adapter.deleteFile("UserSet"));
    EXPECT_THAT(m_Device.operations, ElementsAre("Close 0", "Delete 1", "Close 1", "Delete 0"));
}

TEST_F(FileProtocol, WaitsUntilTheDeviceIsDone) {
    Attach();
    m_Device.busyPolls = 3;
    EXPECT_TRUE(m_Adapter.closeFile("UserSet"));
    EXPECT_EQ(m_Device.busyPolls, 0);
    const auto& accesses = m_Device.GetAccesses();
    EXPECT_EQ(std::count(accesses.begin(), accesses.end(), TestPort::Access{false, kExecute, 4}),
              4);
}

TEST_F(FileProtocol, PassesOnThatTheDeviceKnowsNoSuchFile) {
    Attach();
    char byte = 0;
    EXPECT_THROW(m_Adapter.openFile("Other", kRead), InvalidArgumentException);
    EXPECT_THROW(m_Adapter.closeFile(nullptr), InvalidArgumentException);
    EXPECT_THROW(m_Adapter.deleteFile("Other"), InvalidArgumentException);
    EXPECT_THROW(m_Adapter.getBufSize("Other", kRead), InvalidArgumentException);
    EXPECT_THROW(m_Adapter.read(&byte, 0, 1, "Other"), InvalidArgumentException);
    EXPECT_THROW(m_Adapter.write(&byte, 0, 1, nullptr), InvalidArgumentException);
    EXPECT_THAT(m_Device.operations, IsEmpty());
}

TEST_F(FileProtocol, TellsTheSizeOfTheBufferForADirection) {
    Attach();
    EXPECT_EQ(m_Adapter.getBufSize("Calibration", kWrite), kBufferLength);
    EXPECT_EQ(m_Device.Peek<int32_t>(kSelector), 1);
    EXPECT_EQ(m_Device.Peek<int32_t>(kOperation), 3);
    EXPECT_EQ(m_Adapter.getBufSize("UserSet", kRead), kBufferLength);
    EXPECT_EQ(m_Device.Peek<int32_t>(kSelector), 0);
    EXPECT_EQ(m_Device.Peek<int32_t>(kOperation), 2);
    EXPECT_THAT(m_Device.operations, IsEmpty());
}

// Reading.

TEST_F(FileProtocol, ReadsInPiecesOfTheBuffer) {
    Attach();
    m_Device.content = "The quick brown fox jumps over the lazy dog";
    EXPECT_EQ(ReadFile(4, 35), "35:quick brown fox jumps over the lazy");
    EXPECT_THAT(m_Device.operations, ElementsAre("Read 0 4+16", "Read 0 20+16", "Read 0 36+3"));
}

TEST_F(FileProtocol, ReadsNoMoreAtATimeThanTheLengthTakes) {
    Attach({.lengthMax = 6});
    m_Device.content = "The quick brown fox";
    EXPECT_EQ(ReadFile(0, 10), "10:The quick ");
    EXPECT_THAT(m_Device.operations, ElementsAre("Read 0 0+6", "Read 0 6+4"));
}

TEST_F(FileProtocol, ReadsNothingWithoutAskingTheDevice) {
    Attach();
    EXPECT_EQ(ReadFile(0, 0), "0:");
    EXPECT_EQ(m_Adapter.read(nullptr, 0, -1, "UserSet"), 0);
    EXPECT_THAT(m_Device.operations, IsEmpty());
}

TEST_F(FileProtocol, ReadsOnBehindAShortCount) {
    Attach();
    m_Device.content = "The quick brown fox";
    m_Device.answers = {{3}, {5}};
    EXPECT_EQ(ReadFile(0, 19), "19:The quick brown fox");
    EXPECT_THAT(m_Device.operations, ElementsAre("Read 0 0+16", "Read 0 3+16", "Read 0 8+11"));
}

TEST_F(FileProtocol, StopsReadingAtTheEndOfTheFile) {
    Attach();
    m_Device.content = "The quick brown fox";
    EXPECT_EQ(ReadFile(0, 30), "19:The quick brown fox...........");
    EXPECT_THAT(m_Device.operations, ElementsAre("Read 0 0+16", "Read 0 16+14", "Read 0 19+11"));
}

TEST_F(FileProtocol, DoesNotCountWhatIsReadWhenTheDeviceFails) {
    Attach();
    m_Device.content = "The quick brown fox";
    m_Device.answers = {{16}, {.result = 2, .status = 1}};
    EXPECT_EQ(ReadFile(0, 19), "16:The quick brown fo.");
    EXPECT_EQ(m_Device.operations.size(), 2U);
}

TEST_F(FileProtocol, ReadsNoMoreThanTheCallersMemoryTakes) {
    Attach();
    m_Device.content = "The quick brown fox";
    m_Device.answers = {{16}};
    EXPECT_EQ(ReadFile(0, 3), "3:The");
}

TEST_F(FileProtocol, ReadsNothingWhereTheDeviceHasNoRoom) {
    Attach({.lengthMax = 0});
    EXPECT_EQ(ReadFile(0, 3), "0:...");
    EXPECT_EQ(WriteFile(0, "The"), 0);
    EXPECT_THAT(m_Device.operations, IsEmpty());
}

// Writing.

TEST_F(FileProtocol, WritesWholeWordsIntoTheBuffer) {
    Attach();
    m_Device.PutBytes(kBuffer, std::vector<uint8_t>(kBufferLength, 0xEE));
    EXPECT_EQ(WriteFile(0, "Hello"), 5);
    EXPECT_THAT(m_Device.operations, ElementsAre("Write 0 0+5"));
    EXPECT_THAT(Writes(), testing::Contains(std::pair<int64_t, int64_t>(kBuffer, 8)));
    EXPECT_THAT(m_Device.PeekBytes(kBuffer, 9),
                ElementsAre('H', 'e', 'l', 'l', 'o', 0, 0, 0, 0xEE));
    EXPECT_EQ(m_Device.content, "Hello");
}

TEST_F(FileProtocol, WritesInOrderAndInPiecesOfTheBuffer) {
    Attach();
    EXPECT_EQ(WriteFile(2, "The quick brown fox"), 19);
    EXPECT_THAT(m_Device.operations, ElementsAre("Write 0 2+16", "Write 0 18+3"));
    EXPECT_THAT(Writes(),
                ElementsAre(std::pair(kSelector, 4), std::pair(kOperation, 4),
                            std::pair(kBuffer, 16), std::pair(kOffset, 4), std::pair(kLength, 4),
                            std::pair(kExecute, 4), std::pair(kBuffer, 4), std::pair(kOffset, 4),
                            std::pair(kLength, 4), std::pair(kExecute, 4)));
    EXPECT_EQ(m_Device.content.substr(2), "The quick brown fox");
}

TEST_F(FileProtocol, WritesNothingWithoutAskingTheDevice) {
    Attach();
    EXPECT_EQ(WriteFile(0, ""), 0);
    EXPECT_THAT(m_Device.operations, IsEmpty());
}

TEST_F(FileProtocol, StaysWithinABufferOfBrokenWords) {
    Attach({.bufferLength = 14});
    EXPECT_EQ(WriteFile(0, "The quick brown fox"), 19);
    EXPECT_THAT(m_Device.operations, ElementsAre("Write 0 0+14", "Write 0 14+5"));
    EXPECT_EQ(m_Device.content, "The quick brown fox");
}

TEST_F(FileProtocol, OffersAgainWhatTheDeviceDidNotTake) {
    Attach();
    m_Device.answers = {{7}, {0}};
    EXPECT_EQ(WriteFile(0, "The quick brown fox"), 19);
    EXPECT_THAT(m_Device.operations, ElementsAre("Write 0 0+16", "Write 0 7+12", "Write 0 7+12"));
    EXPECT_EQ(m_Device.content, "The quick brown fox");
}

TEST_F(FileProtocol, EndsWritingWhenTheDeviceTakesNothingThreeTimesInARow) {
    Attach();
    m_Device.answers = {{0}, {0}, {4}, {0}, {0}, {0}, {16}};
    EXPECT_EQ(WriteFile(0, "The quick"), 4);
    EXPECT_EQ(m_Device.answers.size(), 1U);
}

TEST_F(FileProtocol, CountsWhatIsWrittenWhenTheDeviceFails) {
    Attach();
    m_Device.answers = {{16}, {.result = 2, .status = 1}};
    EXPECT_EQ(WriteFile(0, "The quick brown fox jumps"), 18);
    EXPECT_EQ(m_Device.operations.size(), 2U);
}

TEST_F(FileProtocol, CountsNoMoreThanItWrites) {
    Attach();
    m_Device.answers = {{8}};
    EXPECT_EQ(WriteFile(0, "Hello"), 5);
    EXPECT_EQ(m_Device.operations.size(), 1U);
}

// Failures.

/// Both directions.
class FileProtocolFailure : public FileProtocol, public testing::WithParamInterface<bool> {
protected:
    void Move(const char* bytes) {
        if (GetParam()) {
            m_Adapter.write(bytes, 0, 5, "UserSet");
        } else {
            char* const target = bytes == nullptr ? nullptr : m_Target;
            m_Adapter.read(target, 0, 5, "UserSet");
        }
    }
    static std::string LineStart() {
        return std::string(GetParam() ? "Write" : "Read") + " of 'UserSet' failed: ";
    }
    std::vector<Line> Lines() const { return m_Log.Lines(kLog); }

    char m_Target[5] = {};
};

TEST_P(FileProtocolFailure, OfANodeIsLoggedAndGoesOn) {
    Attach();
    m_Device.FailAccess(1);
    const std::string what = FailureOf<TimeoutException>([&] { Move("Hello"); }).what;
    EXPECT_THAT(what, StartsWith("Access failed"));
    EXPECT_THAT(Lines(), ElementsAre(Line{LogError, LineStart() + what}));
}

TEST_P(FileProtocolFailure, OfATransportIsLoggedAndGoesOn) {
    Attach();
    m_Device.isGone = true;
    EXPECT_THROW(Move("Hello"), std::runtime_error);
    EXPECT_THAT(Lines(), ElementsAre(Line{LogError, LineStart() + "The device is gone"}));
}

TEST_P(FileProtocolFailure, OfACountIsLoggedAndGoesOn) {
    Attach();
    m_Device.content = "Hello";
    m_Device.answers = {{-1}};
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { Move("Hello"); }),
              "The device claims to have moved -1 bytes");
    EXPECT_EQ(Lines().size(), 1U);
}

TEST_P(FileProtocolFailure, OfTheCallerIsLoggedAndGoesOn) {
    Attach();
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { Move(nullptr); }),
              "Buffer pointer is NULL");
    EXPECT_THAT(m_Device.operations, IsEmpty());
    EXPECT_EQ(Lines().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Of, FileProtocolFailure, testing::Bool(),
                         [](const auto& isWrite) { return isWrite.param ? "Write" : "Read"; });

}  // namespace

}  // namespace EngineTest
