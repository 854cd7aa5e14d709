#pragma once
/// What the tool does: a function for each command, a source for each kind of them.
/// With `json` a command prints for machines.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "OvIAPI.h"
#include "camera/Session.h"
#include "pipeline/PipelineOptions.h"

// The cameras that are found.

void List(uint32_t timeout, bool json);

// All that is known of a camera, its interface and its producer.

void ShowInfo(const CameraChoice& choice, bool json);

// Features of a camera, read and written by name.

struct FeatureListOptions {
    /// Part of a name, or a whole one with the wildcards of a shell.
    std::string pattern;
    /// Features for rarer users aren't listed.
    std::string visibility = "guru";
    /// With the categories, each before its content.
    bool tree = false;
};
/// All that the camera has, with type, value and range. What can't be read is told in its line.
void ListFeatures(const CameraChoice& choice, const FeatureListOptions& options, bool json);
/// All that the descriptions say of features, and what can be done with them at present.
void DescribeFeatures(const CameraChoice& choice, const std::vector<std::string>& names, bool json);
/// The description of a module as its XML.
/// @param module  a name of ModuleNames()
void PrintXml(const CameraChoice& choice, const std::string& module);
/// "camera" is the first.
const std::vector<std::string>& ModuleNames();
/// Why features are as they are now, what they are made of, and what limits them.
void ExplainFeatures(const CameraChoice& choice, const std::vector<std::string>& names, bool json);
/// Values, one a line.
/// @param names  may choose an entry of a selector: "Gain[GainSelector=AnalogAll]"
void Get(const CameraChoice& choice, const std::vector<std::string>& names, bool json);
/// Sets values and runs commands, in their order, and prints what the camera made of each.
/// @param arguments  "NAME=VALUE" or a command's name, any number of them, or one pair of a
///                   name and a value
void Set(const CameraChoice& choice, const std::vector<std::string>& arguments, bool json);

// Files that a camera keeps.

/// @param name  as the camera has it
/// @param path  of the file here, which is replaced
void GetFile(const CameraChoice& choice, const std::string& name, const std::string& path);
void PutFile(const CameraChoice& choice, const std::string& name, const std::string& path);
void DeleteFile(const CameraChoice& choice, const std::string& name);

// All settings of a camera in a file.

/// Replaces a file that is there.
void SaveSettings(const CameraChoice& choice, const std::string& file);

/// What the camera refuses is told at the end; the rest stays set.
/// @param verify  also compare what the camera made of each
void LoadSettings(const CameraChoice& choice, const std::string& file, bool verify);

// Registers of a camera, past its features.

/// As many bytes as the camera gives, 16 a line with the address before them.
void ReadRegisters(const CameraChoice& choice, uint64_t address, size_t size, bool json);

/// ToolError when the camera takes fewer bytes.
/// @param bytes  in hexadecimal
void WriteRegisters(const CameraChoice& choice, uint64_t address, const std::string& bytes);

// Frames from a camera to files.

struct GrabOptions {
    uint32_t count = 1;
    std::string folder = ".";
    bool png = true;
    bool raw = false;
    /// For each frame, in milliseconds.
    uint32_t timeout = 5000;
    /// For frames that wait to be written, in MiB; else half of what is free.
    std::optional<size_t> memory;
    /// What pictures go through.
    PipelineOptions pipeline;
};

/// What was taken is written whatever ends it, and what was lost is told.
void Grab(const CameraChoice& choice, const GrabOptions& options, bool json);

// What a camera appends to its frames.

struct ChunkOptions {
    uint32_t count = 1;
    /// For each frame, in milliseconds.
    uint32_t timeout = 5000;
};

/// Takes frames and prints the features that can be read from each alone. The
/// camera's chunk mode is on meanwhile.
void PrintChunks(const CameraChoice& choice, const ChunkOptions& options, bool json);

// How well frames come.

struct StreamOptions {
    /// From the first frame on.
    double seconds = 5;
    /// For the first frame, in milliseconds.
    uint32_t timeout = 5000;
    /// Features to set before, as for `Set`.
    std::vector<std::string> settings = {};
};

/// Takes frames for some seconds and tells how many came a second, how many were lost or
/// incomplete, and what the producer knows of the reasons.
void MeasureStream(const CameraChoice& choice, const StreamOptions& options, bool json);

// Raw files to pictures.

/// Longest side of a frame in a file.
constexpr int32_t kLongestSide = 16384;

struct ConvertOptions {
    std::vector<std::string> files;
    int32_t width = 0;
    int32_t height = 0;
    std::string pixelFormat;
    /// For a single file; else each picture goes beside its file.
    std::string output;
    PipelineOptions pipeline;
};

/// An output that ends in ".raw" is the picture's bytes alone, all others are PNG.
void Convert(const ConvertOptions& options, bool json);

// What a camera tells on its own.

struct EventOptions {
    /// Entries of "EventSelector"; empty: all whose features the library knows.
    std::vector<std::string> names;
    /// Ends after that many events.
    std::optional<uint32_t> count;
    double seconds = 5;
    /// No frames flow meanwhile.
    bool idle = false;
};

/// Prints events as they come; with `json` one document a line. Afterwards the
/// camera's notifications are as before. Raises when the camera is lost.
void PrintEvents(const CameraChoice& choice, const EventOptions& options, bool json);

// How GigE Vision cameras sit on the network.

/// Dotted texts.
struct IpAddresses {
    std::string ip;
    std::string mask;
    std::string gateway;
};

struct IpConfiguration {
    /// One of IpModeNames.
    std::string mode;
    /// For the modes with a persistent address.
    IpAddresses addresses;
    std::string userId;
};

/// The ways by which a camera can get its address.
std::vector<std::string> IpModeNames();

/// Cameras of all networks with their addresses and their adapters'.
void ListAddresses(uint32_t timeout, bool json);

// Cameras are named by MAC address, in any case and with any separator; they
// need not be reachable.

void ForceIp(const std::string& mac, const IpAddresses& addresses, bool json);
void ConfigureIp(const std::string& mac, const IpConfiguration& configuration, bool json);
void ResetCamera(const std::string& mac, OV_RESET_MODE mode, bool json);

/// The address that a camera keeps; sets it first when `wanted` has one.
void PersistentIp(const CameraChoice& choice, const IpAddresses& wanted, bool json);

// What many cameras do at the same time.

struct ActionOptions {
    uint32_t deviceKey = 0;
    uint32_t groupKey = 0;
    uint32_t groupMask = 0xFFFFFFFF;
    /// In nanoseconds of the clock that the cameras share; else at once.
    std::optional<uint64_t> time;
    /// ID of an interface or name of an adapter; empty: all that send actions.
    std::string interface;
    /// Dotted address; empty: all cameras of the network.
    std::string destination;
    /// For answers, in milliseconds; 0: none is asked for.
    uint32_t wait = 500;
};

/// Prints who answered. Raises when nobody did.
void SendAction(const ActionOptions& options, bool json);

// Cameras that others find on the network.

/// Becomes the simulator, a program of its own beside this one; returns only by a ToolError.
/// @param program    this program as it was called, for the other's help
/// @param arguments  what the simulator is told
void RunSimulator(const std::string& program, const std::vector<std::string>& arguments);
