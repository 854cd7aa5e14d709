#pragma once
/// What the tests of the transport objects share: what was raised, what was
/// logged, and a test producer under the manager.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "OvTestControl.h"
#include "TLClassInterface/Interface.h"
#include "TLClassMain/GevTL.h"
#include "TLClassMain/TL.h"
#include "TLClassMain/TLManager.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

/// What `call` raised, which has to be an `Error` and no class below it.
template <class Error, class Call>
Error Raised(const Call& call) {
    try {
        call();
    } catch (const COvException& error) {
        if (typeid(error) == typeid(Error)) {
            return dynamic_cast<const Error&>(error);
        }
        ADD_FAILURE() << "another exception was raised: " << error.what();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "an exception of another family was raised: " << error.what();
    }
    ADD_FAILURE() << "nothing of the expected type was raised";
    return Error("", "", 0, "");
}

/// Expects an exception of exactly that class with that message.
#define EXPECT_RAISES(Error, message, ...) \
    EXPECT_EQ(::OVTLClass::Raised<Error>([&] { __VA_ARGS__; }).GetDescription(), message)

/// Expects a CUnexpectedError with that status and that message.
#define EXPECT_UNEXPECTED(status, message, ...)                             \
    do {                                                                    \
        const auto raised = Raised<CUnexpectedError>([&] { __VA_ARGS__; }); \
        EXPECT_EQ(raised.GetStatus(), status);                              \
        EXPECT_EQ(raised.GetDescription(), message);                        \
    } while (false)

/// A file in the temporary folder, gone at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& name)
        : m_path(::testing::TempDir() + std::to_string(getpid()) + name) {}
    ~TemporaryFile() { std::remove(m_path.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return m_path; }
    void Write(const std::string& content) const {
        std::ofstream(m_path, std::ios::binary) << content;
    }

private:
    std::string m_path;
};

/// Gathers what the transport model logs from here on.
class LogCapture {
public:
    LogCapture() : m_file("ovtl.log") {
        COvLog& log = COvLog::GetInstance();
        log.DisableTimeStamp();
        log.SetLogFilePath("/dev/null");
        log.Flush();
        log.SetLogFilePath(m_file.Path());
    }
    ~LogCapture() {
        COvLog& log = COvLog::GetInstance();
        log.Flush();
        log.SetLogFilePath("");
        log.EnableTimeStamp();
    }

    std::vector<std::string> Lines() const {
        COvLog::GetInstance().Flush();
        std::ifstream file(m_file.Path());
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

private:
    TemporaryFile m_file;
};

/// Matches log lines of which one is a message with the place of `function`.
inline auto HasLogged(const std::string& function, const std::string& message) {
    return ::testing::Contains(
        ::testing::MatchesRegex(".*\\.cpp\\([0-9]+\\):'" + function + "':" + message));
}

/// Whether an object is of that class and of none below it.
template <class T, class Pointer>
bool IsExactly(const Pointer& pointer) {
    const auto& object = *pointer;
    return typeid(object) == typeid(T);
}

inline std::string Staged(const std::string& fileName) {
    return std::string(OV_TL_STAGE) + "/" + fileName;
}

/// Expects that whatever was opened in the producer was closed.
inline void ExpectNothingOpen(const TestProducer& producer) {
    for (const char* const kind :
         {"Library", "System", "Interface", "Device", "Stream", "Buffer", "Event", "Acquisition"}) {
        EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
    }
}

/// A test producer as new, and at the end nothing left open in it.
class ProducerTest : public ::testing::Test {
protected:
    explicit ProducerTest(std::string fileName = "KwTL.cti")
        : m_fileName(std::move(fileName)), producer(Staged(m_fileName)) {
        producer.Reset();
    }
    ~ProducerTest() override {
        manager.DoUninit();
        ExpectNothingOpen(producer);
        producer.Reset();
    }

    /// The system module of the producer, opened by the manager.
    std::shared_ptr<CTL> Init() {
        manager.DoInit({m_fileName});
        return std::dynamic_pointer_cast<CTL>(manager.DoGetTLList().at(0));
    }

    /// The first interface after an update of the system module.
    std::shared_ptr<CInterface> InitInterface() {
        const auto tl = Init();
        bool changed = false;
        tl->DoUpdateInterfaceList(0, changed);
        return std::dynamic_pointer_cast<CInterface>(tl->DoGetInterfaceList().at(0));
    }

    /// The first device after updates of the system module and of its interface.
    std::shared_ptr<IDevice> InitDevice() {
        const auto owner = InitInterface();
        bool changed = false;
        owner->DoUpdateDeviceList(0, changed);
        return owner->DoGetDeviceList().at(0);
    }

    const std::string m_fileName;
    TestProducer producer;
    CTLManager& manager = *CTLManager::GetInstance();
};

}  // namespace OVTLClass
