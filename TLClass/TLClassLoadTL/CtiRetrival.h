#pragma once
/// Finds the producers that lie beside this library.

#include <string>
#include <vector>

namespace OVTLClass {

class CCtiRetrival {
public:
    /// The full paths of those of the bare file names that exist beside the
    /// real file of liboviapi.so, in the order of the names. Reads no
    /// environment variable, whatever its name promises. Throws
    /// CNotFoundTLError when none exists.
    static std::vector<std::string> GetCtiListFromGenTLEnv(const std::vector<std::string>& names);

private:
    static std::vector<std::string> __GetTLDirectoryPath();
    static std::vector<std::string> __GetFilePath(const std::vector<std::string>& names,
                                                  const std::vector<std::string>& folders);
};

}  // namespace OVTLClass
