// Changes descriptions by a style sheet. The work is done by a command-line tool: the library
// would otherwise depend on an XSLT library for what hardly any program uses.

#include "factory/NodeMapFactoryStyleSheet.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

namespace {

namespace fs = std::filesystem;

/// A folder for files of this process alone, which is removed with everything in it at the end of
/// the scope.
class TemporaryFolder {
public:
    TemporaryFolder() : m_Path(Parent() + "/ov_stylesheet_XXXXXX") {
        if (mkdtemp(m_Path.data()) == nullptr) {
            RUNTIME_EXCEPTION("Could not create a folder '%s' (%s)", m_Path.c_str(),
                              std::strerror(errno));
        }
    }
    ~TemporaryFolder() {
        std::error_code ignored;  // a file that is left there does no harm
        fs::remove_all(m_Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string File(const char* name) const { return m_Path + "/" + name; }

private:
    static std::string Parent() {
        std::error_code failure;
        std::string path = fs::temp_directory_path(failure);
        if (failure) {
            RUNTIME_EXCEPTION("There is no folder for temporary files (%s)",
                              failure.message().c_str());
        }
        return path;
    }

    std::string m_Path;
};

/// Flushed here, while a full disk can still be reported.
void WriteTextFile(const std::string& fileName, const std::string& text) {
    std::ofstream file(fileName, std::ios::binary);
    if (!file) {
        RUNTIME_EXCEPTION("Could not write to '%s' (%s)", fileName.c_str(), std::strerror(errno));
    }
    file << text << std::flush;
    if (!file) {
        RUNTIME_EXCEPTION("Could not write to '%s'", fileName.c_str());
    }
}

}  // namespace

/// In one piece: descriptions are a few megabytes at most.
std::string ReadTextFile(const std::string& fileName) {
    std::ifstream file(fileName, std::ios::binary);
    std::ostringstream text;
    if (file) {
        text << file.rdbuf();
    }
    if (!file || file.bad()) {
        RUNTIME_EXCEPTION("Could not read from '%s' (%s)", fileName.c_str(), std::strerror(errno));
    }
    return std::move(text).str();
}

/// Before the description is read, because that may take long.
void CheckStyleSheet(const GenICam_3_0_ORVANE::gcstring& fileName) {
    if (fileName.empty() || access(fileName.c_str(), R_OK) != 0) {
        LOGICAL_ERROR_EXCEPTION("Invalid StyleSheetFileName passed.");
    }
}

/// The tool's first run only finds out whether it is there, so that the failure can say so.
std::string Transform(const std::string& description, const std::string& styleSheet) {
    // NOLINTBEGIN(cert-env33-c): the tool is an external one
    if (std::system("xsltproc --version") < 0) {
        RUNTIME_EXCEPTION(
            "Cannot find xsltproc. The xsltproc executable must be in path for this function");
    }
    const TemporaryFolder folder;
    const std::string in = folder.File("in.xml");
    const std::string out = folder.File("out.xml");
    WriteTextFile(in, description);
    const std::string command = "xsltproc -o \"" + out + "\" \"" + styleSheet + "\" \"" + in + "\"";
    const int code = std::system(command.c_str());
    // NOLINTEND(cert-env33-c)
    if (code != 0) {
        RUNTIME_EXCEPTION(
            "There was an error when running xsltproc or xsltproc cannot be found. (code = %i)",
            code);
    }
    return ReadTextFile(out);
}

}  // namespace GenApi_3_0_ORVANE
