#pragma once
/// A shared library that is loaded when something needs it, not with the process.

namespace GenApi_3_0_ORVANE {

/// Stays loaded until the end of the process.
class CLateLibrary {
public:
    /// @throws RuntimeException if the system doesn't find the library or can't load it
    explicit CLateLibrary(const char* fileName);

    /// Sets the pointer to the function of that name.
    /// @throws RuntimeException if the library has none
    template <class Function>
    void Find(const char* name, Function*& function) const {
        function = reinterpret_cast<Function*>(Address(name));
    }

private:
    void* Address(const char* name) const;

    void* m_pLibrary;
};

}  // namespace GenApi_3_0_ORVANE
