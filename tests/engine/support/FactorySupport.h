#pragma once
/// What tests of the factory share: descriptions, files, maps with an owner.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "GenApi/NodeMapFactory.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace fs = std::filesystem;

/// A folder for one test.
class ScratchFolder {
public:
    ScratchFolder() {
        m_Path = fs::temp_directory_path() / "ov_factory_test_XXXXXX";
        EXPECT_NE(mkdtemp(m_Path.data()), nullptr);
    }
    ~ScratchFolder() { fs::remove_all(m_Path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Write(const std::string& name, const std::string& content) const {
        std::string file = m_Path + "/" + name;
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }
    const std::string& Path() const { return m_Path; }
    bool IsEmpty() const { return fs::is_empty(m_Path); }

private:
    std::string m_Path;
};

/// Changes the environment for the life of a scope.
class EnvironmentScope {
public:
    EnvironmentScope(const char* name, const std::string& value) : m_Name(name) {
        if (const char* const old = std::getenv(name)) {
            m_Old = old;
        }
        setenv(name, value.c_str(), 1);
    }
    ~EnvironmentScope() { m_Old ? setenv(m_Name, m_Old->c_str(), 1) : unsetenv(m_Name); }
    EnvironmentScope(const EnvironmentScope&) = delete;
    EnvironmentScope& operator=(const EnvironmentScope&) = delete;

private:
    const char* m_Name;
    std::optional<std::string> m_Old;
};

/// Ends a map with the scope.
class MapOwner {
public:
    explicit MapOwner(INodeMap* map) : m_pMap(map) {}
    ~MapOwner() { dynamic_cast<IDestroy&>(*m_pMap).Destroy(); }
    MapOwner(const MapOwner&) = delete;
    MapOwner& operator=(const MapOwner&) = delete;
    INodeMap* operator->() const { return m_pMap; }
    int64_t ValueOf(const char* name) const {
        return dynamic_cast<IInteger&>(*m_pMap->GetNode(name)).GetValue();
    }

private:
    INodeMap* m_pMap;
};

inline gcstring Description(const std::string& body) {
    return XmlNodeMap::Describe(body).c_str();
}
inline gcstring Description(const std::string& name, int value) {
    return Description(IntegerXml(name, "", Element("Value", std::to_string(value))));
}

}  // namespace EngineTest
