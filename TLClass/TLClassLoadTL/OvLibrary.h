#pragma once
/// A handle to a loaded shared library.

#include <string>

namespace OVTLClass {

/// Holds at most one library and never unloads it by itself: the owner decides
/// when the code that it points at may go.
class COvLibrary {
public:
    COvLibrary() = default;
    COvLibrary(const COvLibrary&) = delete;
    COvLibrary& operator=(const COvLibrary&) = delete;

    /// False when a library is held already or the file doesn't load.
    bool Load(const std::string& path);
    /// True when nothing is held any more or the system took it back.
    bool Unload();
    /// Null, and a line in the log, when the name isn't exported.
    void* Resolve(const char* name) const;
    /// The same without the line.
    void* Find(const char* name) const;

private:
    void* m_handle = nullptr;
};

}  // namespace OVTLClass
