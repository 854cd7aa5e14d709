#pragma once
/// What cameras append to their frames, as features show it.

#include <map>
#include <string>
#include <vector>

#include "FrameTaking.h"

/// Chunk features by their names, with their values as texts.
using ChunkValues = std::map<std::string, std::string>;

/// The features that are available, which they are while a frame is attached. One that can't be
/// read all the same has the message of the failure as its value.
ChunkValues ReadChunks(OV_DEV_HANDLE camera);

/// Has a camera append chunks to its frames, of which some have other values than 0.
void SwitchChunksOn(OV_DEV_HANDLE camera);

/// What such a camera appends to a frame.
/// @param firstFrame  the number of the first frame after a start
ChunkValues ChunksOf(const TakenFrame& frame, uint64_t firstFrame);

/// A frame that was attached when it came.
struct ChunkedFrame {
    TakenFrame frame;
    OV_STATUS attached;
    std::string refusal;  ///< the message if it couldn't be attached
    ChunkValues chunks;
};

/// One of the ways to take frames that can be attached.
struct ChunkWay {
    const char* name;
    /// Starts a camera that waits for triggers, takes so many frames, one after the other, and
    /// stops it.
    std::vector<ChunkedFrame> (*take)(OV_DEV_HANDLE camera, size_t count);
};

extern const ChunkWay kChunkWays[3];
