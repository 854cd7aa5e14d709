#pragma once
/// The log that a user switches on by an environment variable.

#include <string>
#include <string_view>
#include <vector>

#include "Base/Log.h"

namespace OvBase {

/// Writes lines of the categories that `OV_LOG` names to standard error, or to the end of the
/// file that `OV_LOG_FILE` names.
///
/// `OV_LOG` is a list such as "Transport:warning,Port:debug". The levels are "error", "warning",
/// "info" and "debug"; each includes those before it. A category is a name with parts between
/// points. "Port" means every category that has that part, as "GenApi.Camera.Port.Device" has;
/// "all" means every category. The highest level that fits counts. A wrong entry is logged and
/// ignored.
///
/// Any thread may write at any time: each line is one write of the system. When the log is off, a
/// line costs a look at an empty list.
class CUserLog {
public:
    /// Returns the log of the library, as the environment asked for it at the first call. It
    /// lives to the end of the process: threads may write to it until then.
    static CUserLog& GetInstance();
    /// Makes a log as the environment asks for it, for a module that may be unloaded.
    static CUserLog FromEnvironment();

    /// @param wanted    as in `OV_LOG`
    /// @param fileName  empty for standard error
    CUserLog(std::string_view wanted, const std::string& fileName);
    ~CUserLog();
    CUserLog(const CUserLog&) = delete;
    CUserLog& operator=(const CUserLog&) = delete;

    /// Whether anything is written at all.
    bool IsOn() const { return !m_Wanted.empty(); }
    /// Returns the highest level that is written of a category; 0 for none.
    int GetLevel(std::string_view category) const;
    /// Writes a line after the time, the level and the category, if the category is written up to
    /// that level. Without memory the line is lost.
    void Write(std::string_view category, int level, std::string_view line) noexcept {
        Write(category, level, {}, line);
    }
    /// The same with a subject and a colon before the line.
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
