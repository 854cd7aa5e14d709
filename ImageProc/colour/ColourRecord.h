#pragma once
/// Access to a record of colour correction that another thread may write.

#include "QyImageProc.h"

namespace QyColour {

/// Holds the lock of a record.
class RecordLock {
public:
    /// @throws std::system_error when the lock fails, or there is none
    explicit RecordLock(const QyColorCorrectionRecord& record);
    RecordLock(const RecordLock&) = delete;
    RecordLock& operator=(const RecordLock&) = delete;
    ~RecordLock();

private:
    void* m_mutex;
};

}  // namespace QyColour
