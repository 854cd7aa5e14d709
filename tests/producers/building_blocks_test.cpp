/// @file
/// The parts of the framework on their own: registers, handles, archives,
/// buffer handling.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "framework/BufferPool.h"
#include "framework/ChildList.h"
#include "framework/Functions.h"
#include "framework/Handles.h"
#include "framework/RegisterSpace.h"
#include "framework/SpinBeforeSleep.h"
#include "framework/Zip.h"

using namespace OvProducer;

namespace {

/// The GenTL code that `act` fails with; 0 when it doesn't.
template <typename Act>
GenTL::GC_ERROR CodeOf(Act act) {
    try {
        act();
        return 0;
    } catch (const Failure& failure) {
        return failure.Code();
    }
}

class Registers : public testing::Test {
protected:
    Registers() {
        space.AddInteger(
            0x100, 4, [this] { return value; }, [this](std::int64_t v) { value = v; });
        space.AddInteger(0x104, 2, [] { return 0x1234; });
        space.AddText(
            0x200, 8, [this] { return text; }, [this](const std::string& t) { text = t; });
    }

    std::vector<unsigned> Read(std::uint64_t address, std::size_t length) {
        std::vector<std::byte> bytes(length);
        space.Read(address, bytes);
        std::vector<unsigned> out(length);
        std::transform(bytes.begin(), bytes.end(), out.begin(),
                       [](std::byte byte) { return static_cast<unsigned>(byte); });
        return out;
    }
    void Write(std::uint64_t address, const std::string& bytes) {
        space.Write(address, std::as_bytes(std::span(bytes)));
    }

    RegisterSpace space;
    std::int64_t value = 0x11223344;
    std::string text = "abc";
};

TEST_F(Registers, NumbersAreLittleEndian) {
    EXPECT_EQ(Read(0x100, 4), (std::vector<unsigned>{0x44, 0x33, 0x22, 0x11}));
}

TEST_F(Registers, ReadMaySpanNeighbours) {
    EXPECT_EQ(Read(0x102, 4), (std::vector<unsigned>{0x22, 0x11, 0x34, 0x12}));
}

TEST_F(Registers, NarrowWriteKeepsTheRest) {
    Write(0x101, "\x55");
    EXPECT_EQ(value, 0x11225544);
}

TEST_F(Registers, GapsAreRefusedBeforeAnythingIsWritten) {
    EXPECT_EQ(CodeOf([&] { Read(0x104, 4); }), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([&] { Read(0x0FF, 1); }), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([&] { Write(0x206, "xxxx"); }), GenTL::GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(text, "abc");
}

TEST_F(Registers, WithoutAWriterTheyAreReadOnly) {
    EXPECT_EQ(CodeOf([&] { Write(0x104, "xx"); }), GenTL::GC_ERR_ACCESS_DENIED);
}

TEST_F(Registers, TextIsCutToItsLengthAndEndsWithNul) {
    text = "0123456789";
    EXPECT_EQ(Read(0x207, 1), (std::vector<unsigned>{0}));
    Write(0x200, std::string("xy\0zzzzz", 8));
    EXPECT_EQ(text, "xy");
}

TEST_F(Registers, MustNotOverlap) {
    EXPECT_THROW(space.AddInteger(0x102, 4, [] { return 0; }), std::logic_error);
    EXPECT_THROW(space.AddInteger(0x0FE, 4, [] { return 0; }), std::logic_error);
    EXPECT_NO_THROW(space.AddInteger(0x0FC, 4, [] { return 0; }));
}

TEST_F(Registers, CommandRunsOnAnythingButZero) {
    int runs = 0;
    space.AddCommand(0x300, [&] { ++runs; });
    Write(0x300, std::string(4, '\0'));
    EXPECT_EQ(runs, 0);
    Write(0x300, std::string("\1\0\0\0", 4));
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(Read(0x300, 4), (std::vector<unsigned>{0, 0, 0, 0}));
}

TEST(Handles, AreNeverGivenTwice) {
    HandleTable table;
    void* first = table.Add(std::make_shared<Buffer>());
    table.Remove(first);
    void* second = table.Add(std::make_shared<Buffer>());
    EXPECT_NE(first, second);
    EXPECT_EQ(CodeOf([&] { table.Get<Buffer>(first); }), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_NE(table.Get<Buffer>(second), nullptr);
}

TEST(Handles, KeepAnObjectThatIsInUse) {
    HandleTable table;
    void* handle = table.Add(std::make_shared<Buffer>());
    const std::shared_ptr<Buffer> used = table.Get<Buffer>(handle);
    table.Remove(handle);
    EXPECT_EQ(used->Handle(), handle);
}

TEST(Handles, AreFoundHoweverManyThereAre) {
    constexpr std::size_t kCount = 1000;
    HandleTable table;
    std::vector<void*> handles;
    for (std::size_t i = 0; i < kCount; ++i) {
        handles.push_back(table.Add(std::make_shared<Buffer>()));
    }
    for (std::size_t i = 0; i < kCount; i += 2) {
        table.Remove(handles[i]);
    }
    for (std::size_t i = 0; i < kCount; ++i) {
        if (i % 2 == 0) {
            EXPECT_EQ(CodeOf([&] { table.Get<Buffer>(handles[i]); }), GenTL::GC_ERR_INVALID_HANDLE);
        } else {
            EXPECT_EQ(table.Get<Buffer>(handles[i])->Handle(), handles[i]);
        }
    }
}

TEST(Handles, AreOfOneTableOnly) {
    HandleTable table;
    HandleTable other;
    void* const handle = table.Add(std::make_shared<Buffer>());
    EXPECT_NE(other.Add(std::make_shared<Buffer>()), handle);
    EXPECT_EQ(CodeOf([&] { other.Get<Buffer>(handle); }), GenTL::GC_ERR_INVALID_HANDLE);
    other.Remove(handle);
    EXPECT_EQ(table.Get<Buffer>(handle)->Handle(), handle);
}

TEST(Handles, KeepTheOwnerAsLongAsTheObjectLives) {
    HandleTable table;
    auto owner = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = owner;
    void* const handle = table.Add(std::make_shared<Buffer>(), owner);
    owner = nullptr;
    std::shared_ptr<Buffer> used = table.Get<Buffer>(handle);
    table.Remove(handle);
    EXPECT_FALSE(watched.expired());
    used = nullptr;
    EXPECT_TRUE(watched.expired());
}

TEST(Handles, AreRemovedWithThoseOfTheSameOwner) {
    HandleTable table;
    const auto owner = std::make_shared<int>(0);
    const auto another = std::make_shared<int>(0);
    void* const first = table.Add(std::make_shared<Buffer>(), owner);
    void* const second = table.Add(std::make_shared<Buffer>(), another);
    void* const third = table.Add(std::make_shared<Buffer>(), owner);
    table.RemoveAllOf(owner.get());
    EXPECT_EQ(CodeOf([&] { table.Get<Buffer>(first); }), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(CodeOf([&] { table.Get<Buffer>(third); }), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_NE(table.Get<Buffer>(second), nullptr);
    EXPECT_EQ(owner.use_count(), 1);
}

TEST(Handles, AreFoundWhileOthersComeAndGo) {
    HandleTable table;
    void* const handle = table.Add(std::make_shared<Buffer>());
    std::atomic<bool> over = false;
    {
        std::vector<std::jthread> others;
        for (int i = 0; i < 2; ++i) {
            others.emplace_back([&] {
                for (int round = 0; round < 2000; ++round) {
                    void* const own = table.Add(std::make_shared<Buffer>());
                    EXPECT_EQ(table.Get<Buffer>(own)->Handle(), own);
                    table.Remove(own);
                    EXPECT_EQ(CodeOf([&] { table.Get<Buffer>(own); }),
                              GenTL::GC_ERR_INVALID_HANDLE);
                }
                over = true;
            });
        }
        while (!over) {
            EXPECT_EQ(table.Get<Buffer>(handle)->Handle(), handle);
        }
    }
}

TEST(SpinsBeforeSleep, EndWithTheLockHeldWhenNothingComes) {
    SpinBeforeSleep spin;
    std::mutex mutex;
    std::unique_lock lock(mutex);
    for (int i = 0; i < 1000; ++i) {
        spin.Spin(lock);
        ASSERT_TRUE(lock.owns_lock());
    }
}

TEST(SpinsBeforeSleep, LeaveTheLockToWhoeverNotifies) {
    constexpr int rounds = 1000;
    SpinBeforeSleep spin;
    std::mutex mutex;
    int came = 0;
    std::jthread notifier([&] {
        for (int i = 0; i < rounds; ++i) {
            const std::lock_guard lock(mutex);
            ++came;
            spin.Notify();
        }
    });
    std::unique_lock lock(mutex);
    while (came < rounds) {
        spin.Spin(lock);
        // A spin that is left out keeps the lock.
        lock.unlock();
        std::this_thread::yield();
        lock.lock();
    }
    EXPECT_EQ(came, rounds);
}

TEST(Zip, EndsWithADirectoryOfOneEntry) {
    const std::vector<std::byte> zip = MakeZip("a.xml", std::string(1000, 'x'));
    const auto word = [&](std::size_t offset) {
        std::uint32_t value = 0;
        std::memcpy(&value, zip.data() + offset, sizeof value);
        return value;
    };
    const std::size_t end = zip.size() - 22;
    EXPECT_LT(zip.size(), 300U);
    EXPECT_EQ(word(0), 0x04034B50U);
    EXPECT_EQ(word(end), 0x06054B50U);
    EXPECT_EQ(word(end + 8), 0x00010001U);
    EXPECT_EQ(word(word(end + 16)), 0x02014B50U);
    EXPECT_EQ(word(22), 1000U);
}

TEST(Functions, KnowTheirNames) {
    EXPECT_EQ(NameOf(Function::DSQueueBuffer), "DSQueueBuffer");
    EXPECT_EQ(FunctionNamed("IFForceIp"), Function::IFForceIp);
    EXPECT_EQ(FunctionNamed("Nothing"), Function::Count);
    EXPECT_EQ(kFunctionCount, 56U);
}

TEST(Failures, LongTextsAreCut) {
    StoreLastError(-1001, std::string(5000, 'x'));
    EXPECT_EQ(std::string(ReadLastError().text), std::string(511, 'x'));
}

// --- Child lists. ---

struct NamedBackend {
    struct NamedFacts {
        std::string id;
    };
    std::string id;
    NamedFacts Facts() const { return {id}; }
};
struct NamedChild {
    void Close() { isClosed = true; }
    bool isClosed = false;
};
using Children = ChildList<NamedBackend, NamedChild>;

std::shared_ptr<NamedBackend> Named(const char* id) {
    return std::make_shared<NamedBackend>(NamedBackend{id});
}

TEST(ChildLists, ChangeWithTheirIdsNotTheirOrder) {
    Children children;
    EXPECT_TRUE(children.Update({Named("a"), Named("b")}));
    EXPECT_FALSE(children.Update({Named("b"), Named("a")}));
    EXPECT_TRUE(children.Update({Named("b")}));
}

TEST(ChildLists, SelectionStaysInRange) {
    Children children;
    children.Update({Named("a"), Named("b")});
    children.Select(1);
    EXPECT_EQ(CodeOf([&] { children.Select(2); }), GenTL::GC_ERR_INVALID_VALUE);
    children.Update({Named("b")});
    EXPECT_EQ(children.Selected(), 0);
    EXPECT_EQ(children.LastIndex(), 0);
    children.Update({});
    EXPECT_EQ(children.Selected(), 0);
    EXPECT_EQ(children.LastIndex(), -1);
}

TEST(ChildLists, ForgetAChildOnlyOnce) {
    Children children;
    const auto child = children.Open("a", [] { return std::make_shared<NamedChild>(); });
    EXPECT_EQ(CodeOf([&] { children.Open("a", [] { return std::make_shared<NamedChild>(); }); }),
              GenTL::GC_ERR_RESOURCE_IN_USE);
    children.Remove(child);
    EXPECT_EQ(CodeOf([&] { children.Remove(child); }), GenTL::GC_ERR_INVALID_HANDLE);
}

// --- Buffer handling modes. ---

class Handling : public testing::Test {
protected:
    Handling() {
        event = pool.MakeEvent();
        for (int i = 0; i < 2; ++i) {
            buffers.push_back(pool.MakeBuffer(nullptr, 16, nullptr));
            void* const handle = handles.Add(buffers.back());
            pool.Announce(buffers.back(), nullptr);
            pool.Queue(handle);
        }
    }

    /// A frame arrives; false when it is lost.
    bool Arrive(std::uint64_t id) {
        const std::shared_ptr<Buffer> buffer = pool.TakeInput();
        if (!buffer) {
            return false;
        }
        FrameInfo frame;
        frame.frameId = id;
        pool.Deliver(buffer, frame);
        return true;
    }

    /// IDs of the frames that wait, oldest first.
    std::vector<std::uint64_t> Fetch() {
        std::vector<std::uint64_t> ids;
        while (pool.Counters().output != 0) {
            GenTL::S_EVENT_NEW_BUFFER data{};
            std::size_t size = sizeof data;
            event->GetData(&data, &size, 0);
            for (const auto& buffer : buffers) {
                BufferFacts& facts = *buffer->facts;
                if (facts.State() == BufferState::Idle && facts.HasFrame() && facts.NewData()) {
                    ids.push_back(facts.FrameId());
                    facts.SetNewData(false);
                }
            }
        }
        return ids;
    }

    HandleTable handles;
    BufferPool pool{"Custom"};
    std::shared_ptr<Event> event;
    std::vector<std::shared_ptr<Buffer>> buffers;
};

TEST_F(Handling, OldestFirstLosesTheNewest) {
    EXPECT_TRUE(Arrive(0));
    EXPECT_TRUE(Arrive(1));
    EXPECT_FALSE(Arrive(2));
    EXPECT_EQ(Fetch(), (std::vector<std::uint64_t>{0, 1}));
}

TEST_F(Handling, OverwriteReplacesTheOldest) {
    pool.SetHandling(BufferHandling::OldestFirstOverwrite);
    EXPECT_TRUE(Arrive(0));
    EXPECT_TRUE(Arrive(1));
    EXPECT_TRUE(Arrive(2));
    EXPECT_EQ(pool.Counters().lost, 1U);
    EXPECT_EQ(Fetch(), (std::vector<std::uint64_t>{1, 2}));
}

TEST_F(Handling, NewestOnlyKeepsOne) {
    pool.SetHandling(BufferHandling::NewestOnly);
    for (std::uint64_t id = 0; id < 5; ++id) {
        EXPECT_TRUE(Arrive(id));
    }
    EXPECT_EQ(pool.Counters().output, 1U);
    EXPECT_EQ(Fetch(), (std::vector<std::uint64_t>{4}));
}

TEST_F(Handling, WaitingForABufferEndsWithTheStop) {
    pool.Flush(GenTL::ACQ_QUEUE_ALL_DISCARD);
    std::stop_source stop;
    std::jthread stopper([&] { stop.request_stop(); });
    EXPECT_EQ(pool.WaitInput(stop.get_token()), nullptr);
}

}  // namespace
