#pragma once
/// Flat calls on a camera, drawn by chance: those of several threads at once.

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <shared_mutex>
#include <string>
#include <vector>

#include "OvINodes.h"
#include "support/LastError.h"

/// A camera that any thread opens, uses and closes. All it keeps to is what
/// applications must: a handle is closed once, when no other thread uses it.
class SharedCamera {
public:
    explicit SharedCamera(std::string id) : m_id(std::move(id)) {}

    const std::string& GetId() const { return m_id; }

    /// Runs a call on the open camera; false when it isn't open.
    bool Use(const std::function<void(OV_DEV_HANDLE)>& call);
    /// Takes a handle that an opening gave.
    void Keep(OV_DEV_HANDLE handle);
    /// Closes the camera when it is open.
    OV_STATUS Close();

    /// What calls gave and others take back. Empty again once the camera is closed.
    void AddLoan(OV_FRAME_BUFFER* frame);
    OV_FRAME_BUFFER* TakeLoan();
    void AddCallback(OV_FEATURE_ID featureID, void* callback);
    std::pair<OV_FEATURE_ID, void*> TakeCallback();
    void AddOfflineCallback(void* callback);
    void* TakeOfflineCallback();
    void AddNodeCallback(OV_NODE_HANDLE node, OV_NODE_CALLBACK_HANDLE callback);
    std::pair<OV_NODE_HANDLE, OV_NODE_CALLBACK_HANDLE> TakeNodeCallback();

private:
    std::string m_id;
    std::shared_mutex m_use;
    OV_DEV_HANDLE m_handle = nullptr;
    std::mutex m_mutex;
    std::vector<OV_FRAME_BUFFER*> m_loans;
    std::vector<std::pair<OV_FEATURE_ID, void*>> m_callbacks;
    std::vector<void*> m_offlineCallbacks;
    std::vector<std::pair<OV_NODE_HANDLE, OV_NODE_CALLBACK_HANDLE>> m_nodeCallbacks;
};

/// What calls may do to the cameras, and to the machine, without harm.
struct HarmlessArguments {
    uint64_t memory = 0;  ///< address of eight bytes that no feature minds
    OV_IP_CONFIGURE_MODE mode = OV_IP_CONFIGURE_LLA;
    const char* ip = "";  ///< to force
    const char* mask = "";
    const char* gateway = "";
};

/// One thread's calls.
class RandomCaller {
public:
    RandomCaller(unsigned seed, std::vector<SharedCamera*> cameras,
                 const HarmlessArguments& harmless);

    /// One call, or the few that belong together.
    void CallOne();

    /// How often each function was called, and each status came.
    const std::map<std::string, uint64_t>& GetCalls() const { return m_calls; }
    const std::map<OV_STATUS, uint64_t>& GetStatuses() const { return m_statuses; }

private:
    using Step = void (RandomCaller::*)(SharedCamera&);
    static const std::vector<Step>& Steps();

    void Open(SharedCamera& camera);
    bool IsSerial(OV_DEV_HANDLE handle, const std::string& serial);
    void Close(SharedCamera& camera);
    void ReadList(SharedCamera& camera);
    void ReadNumbers(SharedCamera& camera);
    void ReadTexts(SharedCamera& camera);
    void ReadAccess(SharedCamera& camera);
    void Write(SharedCamera& camera);
    void Command(SharedCamera& camera);
    void Start(SharedCamera& camera);
    void Stop(SharedCamera& camera);
    void SetUpAcquisition(SharedCamera& camera);
    void CopyFrame(SharedCamera& camera);
    void BorrowFrame(SharedCamera& camera);
    void BorrowAllFrames(SharedCamera& camera);
    void GiveBack(SharedCamera& camera);
    void Flush(SharedCamera& camera);
    void Listen(SharedCamera& camera);
    void ListenNoMore(SharedCamera& camera);
    void ListenForLoss(SharedCamera& camera);
    void Settings(SharedCamera& camera);
    void Addresses(SharedCamera& camera);
    void AttachFrame(SharedCamera& camera);
    void DetachFrame(SharedCamera& camera);
    void ReadNode(SharedCamera& camera);
    void RelateNode(SharedCamera& camera);
    void WriteNodes(SharedCamera& camera);
    void ExecuteNode(SharedCamera& camera);
    void ListenToNode(SharedCamera& camera);
    void ListenToNodeNoMore(SharedCamera& camera);
    void Files(SharedCamera& camera);

    void ReadNumbersOf(OV_NODE_HANDLE node);
    void ReadTextsOf(OV_NODE_HANDLE node);
    void ReadFactsOf(OV_NODE_HANDLE node);
    /// A node of the camera; 0 after a failure.
    OV_NODE_HANDLE Find(OV_DEV_HANDLE handle, const char* name);
    /// Any feature of any module; 0 if there is none.
    OV_NODE_HANDLE DrawNode(OV_DEV_HANDLE handle);

    unsigned Draw(unsigned count) { return static_cast<unsigned>(m_draw() % count); }
    template <class T, size_t N>
    const T& DrawFrom(const T (&values)[N]) {
        return values[Draw(N)];
    }
    /// Notes the call, and fails the test on a status that can't be.
    OV_STATUS Note(const char* function, OV_STATUS status);

    std::minstd_rand m_draw;
    std::vector<SharedCamera*> m_cameras;
    HarmlessArguments m_harmless;
    std::string m_settingsFile;
    std::vector<uint8_t> m_image;
    std::map<std::string, uint64_t> m_calls;
    std::map<OV_STATUS, uint64_t> m_statuses;
};

// A call by its name.
#define OV_NOTE(function, ...) Note(#function, function(__VA_ARGS__))

/// One for each thread.
using RandomCallers = std::vector<std::unique_ptr<RandomCaller>>;

/// Has each make so many calls on a thread of its own.
void CallAtOnce(const RandomCallers& callers, unsigned calls);

/// Prints how often each function was called, and each status came.
void PrintCalls(const RandomCallers& callers);
