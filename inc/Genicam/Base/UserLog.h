#pragma once
/// The log that a user switches on by an environment variable.

#include <string>
#include <string_view>
#include <vector>

#include "Base/Log.h"

namespace OvBase {

/// Writes lines of the categories that `OV_LOG` names to standard error, or to the
/// end of the file that `OV_LOG_FILE` names.
///
/// `OV_LOG` is a list such as "Transport:warning,Port:debug": the levels are "error",
/// "warning", "info" and "debug", each with those before it. A category is a name
/// with parts between points, and "Port" stands for every category that has that
/// part, as "GenApi.Camera.Port.Device" has; "all" stands for every category. The
/// highest level that fits counts. What the list gets wrong is logged and left out.
///
/// Any thread may write at any time: each line is one write of the system. Off,
/// a line costs the look at an empty list.
class CUserLog {
public:
    /// The log of the library, as the environment asks for it at the first call. It lives
    /// to the end of the process: threads may write to it until then.
    static CUserLog& GetInstance();
    /// A log as the environment asks for it, for a module that may be unloaded.
    static CUserLog FromEnvironment();

    /// @param wanted    as in `OV_LOG`
    /// @param fileName  empty for standard error
    CUserLog(std::string_view wanted, const std::string& fileName);
    ~CUserLog();
    CUserLog(const CUserLog&) = delete;
    CUserLog& operator=(const CUserLog&) = delete;

    /// Whether anything is written at all.
    bool IsOn() const { return !m_Wanted.empty(); }
    /// The highest level that is written of a category; 0 for none.
    int GetLevel(std::string_view category) const;
    /// Writes a line with the time, the level and the category before it, if the
    /// category is written up to that level. Without memory the line is lost.
    void Write(std::string_view category, int level, std::string_view line) noexcept {
        Write(category, level, {}, line);
    }
    /// The same with what the line is about before it, and a colon between them.
    void Write(std::string_view category, int level, std::string_view subject,
               std::string_view line) noexcept;

private:
    struct Wanted {
        std::vector<std::string> parts;
        int level = 0;
    };

    void Want(std::string_view entry);
    void WriteLine(std::string_view category, int level, std::string_view line);

    int m_File;
    bool m_IsOwnFile = false;
    std::vector<Wanted> m_Wanted;
};

}  // namespace OvBase
