#pragma once
/// Makes live nodes of a camera description.

#include <memory>

#include "GenApi/IDestroy.h"
#include "GenApi/INodeMap.h"
#include "NodeMapData/ContentType.h"
#include "NodeMapData/NodeStatistics.h"

namespace GenApi_3_0_ORVANE {

/// How a factory uses the cache of preprocessed descriptions. The cache is in the folder that the
/// environment variable GENICAM_CACHE_V3_0 or SetGenICamCacheFolder names; without one there is
/// no cache.
enum ECacheUsage_t {
    CacheUsage_Automatic = 0,   ///< read it where it has the description, else write it
    CacheUsage_ForceWrite = 1,  ///< the same, and fail if it can't be written
    CacheUsage_ForceRead = 2,   ///< fail if it doesn't have the description
    CacheUsage_Ignore = 3       ///< neither read nor write it
};

/// A handle to one description on its way to live nodes; copies share it. It goes through the
/// steps load, preprocess, create; each step runs the steps before it where they haven't run yet.
/// Belongs to one thread at a time.
///
/// @throws RuntimeException  from whatever loads or preprocesses, for a description that is
///         wrong, with line and column
/// @throws LogicalErrorException  from the same, without a description
class OV_ENGINE_API CNodeMapFactory {
public:
    /// The type under which clients know the statistics.
    using NodeStatistics_t = GenApi_3_0_ORVANE::NodeStatistics_t;

    /// Makes a handle without a description.
    CNodeMapFactory();
    /// Takes a file, which is read when it is first needed.
    /// @param suppressStrings  leaves out the texts that only people read, which saves memory
    /// @throws InvalidArgumentException for an empty name
    CNodeMapFactory(EContentType_t contentType, const gcstring& fileName,
                    ECacheUsage_t cacheUsage = CacheUsage_Ignore, bool suppressStrings = false);
    /// Takes a block of memory. The caller keeps it until the description is loaded.
    CNodeMapFactory(EContentType_t contentType, const void* data, size_t size,
                    ECacheUsage_t cacheUsage = CacheUsage_Ignore, bool suppressStrings = false);
    /// Takes an XML text, which is copied.
    /// @throws InvalidArgumentException for an empty text
    explicit CNodeMapFactory(const gcstring& text, ECacheUsage_t cacheUsage = CacheUsage_Ignore,
                             bool suppressStrings = false);
    /// Shares the description.
    CNodeMapFactory(const CNodeMapFactory& other);
    /// Shares the other handle's description.
    CNodeMapFactory& operator=(const CNodeMapFactory& other);
    virtual ~CNodeMapFactory();

    /// Merges another description into this one when it is loaded.
    /// @throws RuntimeException if the other one is preprocessed already,
    ///         InvalidArgumentException if it holds this one
    void AddInjectionData(const CNodeMapFactory& other);
    /// Parses the description and merges the others into it. Nothing happens if that is done.
    void LoadAndInject();
    /// Loads, then completes what live nodes need and the description doesn't say, such as which
    /// nodes depend on one. Nothing happens if that is done.
    void Preprocess();
    /// Makes the live nodes. The caller owns the map and ends it by IDestroy.
    /// @param deviceName          part of the names of log categories
    /// @param releaseDescription  frees the description afterwards; another map then needs a new
    ///         factory
    INodeMap* CreateNodeMap(const gcstring& deviceName = "Device", bool releaseDescription = true);
    /// The same with a lock that several maps share. The caller keeps the lock until all of them
    /// are gone.
    INodeMap* CreateNodeMap(CLock& lock, const gcstring& deviceName, bool releaseDescription);

    /// Makes a map without nodes, for devices without a description. The caller owns it and ends
    /// it by IDestroy.
    static INodeMap* CreateEmptyNodeMap();

    /// Makes a description of one node and all nodes that it needs.
    /// @param renameToRoot  calls the node, which is a category, "Root" there
    /// @throws InvalidArgumentException if there is no such node, or if it can't be renamed
    CNodeMapFactory ExtractSubtree(const gcstring& nodeName, bool renameToRoot);
    /// Makes a description by a style sheet from this one. The command-line tool "xsltproc" does
    /// the work.
    /// @throws LogicalErrorException without a description or a readable style sheet,
    ///         RuntimeException if the tool fails
    CNodeMapFactory ApplyStyleSheet(const gcstring& styleSheetFileName);
    /// Makes a preprocessed description of the nodes of a map.
    /// @throws InvalidArgumentException for null
    static CNodeMapFactory CreateNodeDataFromNodeMap(INodeMap* nodeMap);

    /// Counts the parts of the description, after preprocessing it where that isn't done.
    void GetNodeStatistics(NodeStatistics_t& statistics);
    /// Replaces the list with the versions of the schema that a description may follow.
    static void GetSupportedSchemaVersions(gcstring_vector& list);

    /// Frees the description and those merged into it. Whatever needs it throws
    /// LogicalErrorException from then on.
    void ReleaseCameraDescriptionFileData();
    /// Whether there is nothing to make nodes of.
    bool IsEmpty() const;
    /// Whether the description is parsed and merged.
    bool IsLoaded() const;
    /// Whether the description is preprocessed.
    bool IsPreprocessed() const;
    /// Whether the description was freed.
    bool IsCameraDescriptionFileDataReleased() const;

    /// Deletes the files of the cache. A file that another process keeps locked for seven seconds
    /// stays.
    /// @return false if the environment names no folder
    /// @throws RuntimeException if the folder can't be read
    static bool ClearCache();

    /// Returns the description, which must be preprocessed, as text for people.
    gcstring ToString() const;
    /// Returns the description as XML, after preprocessing it where that isn't done.
    gcstring ToXml();

private:
    class CNodeMapFactoryImpl;

    explicit CNodeMapFactory(std::shared_ptr<CNodeMapFactoryImpl> pImpl);
    INodeMap* CreateNodeMapWith(CLock* lock, const gcstring& deviceName, bool releaseDescription);

    std::shared_ptr<CNodeMapFactoryImpl> m_pImpl;
};

}  // namespace GenApi_3_0_ORVANE
