#pragma once
/// From a camera description to live nodes.

#include <memory>

#include "GenApi/IDestroy.h"
#include "GenApi/INodeMap.h"
#include "NodeMapData/ContentType.h"
#include "NodeMapData/NodeStatistics.h"

namespace GenApi_3_0_ORVANE {

/// Whether a parsed description is read from and kept in the cache folder.
enum ECacheUsage_t {
    CacheUsage_Automatic = 0,
    CacheUsage_ForceWrite = 1,
    CacheUsage_ForceRead = 2,
    CacheUsage_Ignore = 3
};

/// A handle to one description; copies share it. Belongs to one thread at a
/// time.
class OV_ENGINE_API CNodeMapFactory {
public:
    using NodeStatistics_t = GenApi_3_0_ORVANE::NodeStatistics_t;

    /// Empty: without a description.
    CNodeMapFactory();
    /// A file. InvalidArgumentException for an empty name.
    CNodeMapFactory(EContentType_t contentType, const gcstring& fileName,
                    ECacheUsage_t cacheUsage = CacheUsage_Ignore, bool suppressStrings = false);
    /// A block of memory, which the caller keeps until it is parsed.
    CNodeMapFactory(EContentType_t contentType, const void* data, size_t size,
                    ECacheUsage_t cacheUsage = CacheUsage_Ignore, bool suppressStrings = false);
    /// A text. InvalidArgumentException for an empty one.
    explicit CNodeMapFactory(const gcstring& text, ECacheUsage_t cacheUsage = CacheUsage_Ignore,
                             bool suppressStrings = false);
    CNodeMapFactory(const CNodeMapFactory& other);
    CNodeMapFactory& operator=(const CNodeMapFactory& other);
    virtual ~CNodeMapFactory();

    /// Has another description merged into this one. RuntimeException when it
    /// is preprocessed already.
    void AddInjectionData(const CNodeMapFactory& other);
    /// Parses. Nothing when that is done.
    void LoadAndInject();
    /// Parses and completes the links. Nothing when that is done.
    void Preprocess();
    /// Makes the live nodes. The caller owns the map and ends it by IDestroy.
    /// @param releaseDescription  forget the description afterwards
    INodeMap* CreateNodeMap(const gcstring& deviceName = "Device", bool releaseDescription = true);
    /// The same with a lock that several maps share.
    INodeMap* CreateNodeMap(CLock& lock, const gcstring& deviceName, bool releaseDescription);

    /// A map without nodes, for devices without a description.
    static INodeMap* CreateEmptyNodeMap();

    /// A description of a node and all it needs.
    /// @param renameToRoot  the node is a category and becomes the new root
    CNodeMapFactory ExtractSubtree(const gcstring& nodeName, bool renameToRoot);
    /// The description as a style sheet changes it. The tool "xsltproc" does so.
    /// LogicalErrorException without a description or a readable style sheet.
    CNodeMapFactory ApplyStyleSheet(const gcstring& styleSheetFileName);
    /// A description made of what live nodes tell of themselves.
    static CNodeMapFactory CreateNodeDataFromNodeMap(INodeMap* nodeMap);

    /// Counts the parts of the description, preprocessed where it is not yet.
    void GetNodeStatistics(NodeStatistics_t& statistics);
    static void GetSupportedSchemaVersions(gcstring_vector& list);

    /// Forgets the description, also of all that was merged into it. Whatever
    /// needs it fails from now on.
    void ReleaseCameraDescriptionFileData();
    /// Whether there is nothing to make nodes of.
    bool IsEmpty() const;
    bool IsLoaded() const;
    bool IsPreprocessed() const;
    bool IsCameraDescriptionFileDataReleased() const;

    /// Deletes the files of the cache; one that another process holds for seven
    /// seconds stays. False when the environment names no folder.
    static bool ClearCache();

    /// The preprocessed description as a text dump, and as XML.
    gcstring ToString() const;
    gcstring ToXml();

private:
    class CNodeMapFactoryImpl;

    explicit CNodeMapFactory(std::shared_ptr<CNodeMapFactoryImpl> pImpl);
    INodeMap* CreateNodeMapWith(CLock* lock, const gcstring& deviceName, bool releaseDescription);

    std::shared_ptr<CNodeMapFactoryImpl> m_pImpl;
};

}  // namespace GenApi_3_0_ORVANE
