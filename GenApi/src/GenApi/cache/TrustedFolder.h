#pragma once
/// Files that nobody else can have put where they are.

#include <string>
#include <vector>

#include "OpenFile.h"

namespace GenApi_3_0_ORVANE {

/// A folder of the user who runs the process, or of the administrator. What is in it controls a
/// camera, so neither another user's folder is used nor another user's file, and no link is
/// followed from one of its names. A folder that doesn't exist or isn't trusted behaves as one
/// without files, and refuses new ones.
class CTrustedFolder {
public:
    enum class EReading {
        Done,
        Missing,    ///< no file, or none to be trusted
        NotOpened,  ///< a file that refuses to be opened
        NotRead     ///< a file that fails to be read, or no file but a folder
    };

    explicit CTrustedFolder(const std::string& path);

    EReading Read(const std::string& name, std::string& bytes) const;
    /// Puts a file in place in one step: a reader never meets half of it.
    /// @return false, with nothing changed, if the folder refuses it or has no room for it
    bool Write(const std::string& name, const std::string& bytes) const;
    void Remove(const std::string& name) const;
    /// The names in it. False when it can't be read, with the reason in errno.
    bool List(std::vector<std::string>& names) const;

private:
    GenICam_3_0_ORVANE::COpenFile m_Folder;
};

}  // namespace GenApi_3_0_ORVANE
