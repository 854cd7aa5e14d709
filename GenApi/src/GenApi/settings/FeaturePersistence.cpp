// Steps that storing and loading settings share.

#include "settings/FeaturePersistence.h"

#include <exception>
#include <thread>

#include "Base/GCException.h"
#include "GenApi/ICommand.h"
#include "GenApi/Pointer.h"

namespace GenApi_3_0_ORVANE {

INodeMap& RequireNodeMap(INodeMap* nodeMap) {
    if (nodeMap == nullptr) {
        INVALID_ARGUMENT_EXCEPTION("Nodemap pointer is NULL");
    }
    return *nodeMap;
}

/// Without a pause: each question goes to the device, which takes long enough by itself. Without
/// a limit of time: to give up would leave a set half stored.
void ExecuteAndWait(ICommand& command) {
    command.Execute();
    while (!command.IsDone()) {
        std::this_thread::yield();
    }
}

/// Most devices have none of these commands.
void ExecuteIfPresent(INodeMap& nodeMap, const char* commandName) {
    const CPointer<ICommand> command(nodeMap.GetNode(commandName));
    if (command.IsValid()) {
        ExecuteAndWait(*command);
    }
}

void LoadNotes::Add(const gcstring& note) {
    m_IsEmpty = false;
    if (m_pErrors != nullptr) {
        m_pErrors->push_back(note);
    }
}

/// Must be called while an exception is handled. Transports have failures of their own, which are
/// standard exceptions; any other exception isn't ours to interpret and passes through.
void LoadNotes::AddFailure(const char* task, const gcstring& nodeName) {
    const auto add = [&](const char* what) { Add(task + nodeName + "': " + what); };
    try {
        throw;
    } catch (const GenICam_3_0_ORVANE::BadAllocException&) {
        Add("Out of memory");
    } catch (const std::bad_alloc&) {
        Add("Out of memory");
    } catch (const GenICam_3_0_ORVANE::GenericException& failure) {
        add(failure.what());
    } catch (const std::exception& failure) {
        add(failure.what());
    }
}

}  // namespace GenApi_3_0_ORVANE
