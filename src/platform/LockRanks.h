#pragma once

/// A lock's place among those that one thread may hold together: it takes them by rising place, and never
/// holds two of one place. `name` is for messages.
struct LockRank {
    int place;
    const char* name;
};

/// The locks that meet others, outermost first. One without a rank must be the innermost: nothing that takes
/// another lock is called with it held.
namespace LockRanks {

inline constexpr LockRank loaderProject{5, "ThumbnailLoader::projectLock"};
inline constexpr LockRank loaderSprite{10, "ThumbnailLoader::spriteLock"};
inline constexpr LockRank loaderGrabber{10, "ThumbnailLoader::grabberLock"};
inline constexpr LockRank spriteComposer{20, "SpriteComposer::lock"};
inline constexpr LockRank workerLifecycle{30, "WorkerThreadManager::lifecycleLock"};
inline constexpr LockRank workerQueue{40, "WorkerThreadManager::queueLock"};
inline constexpr LockRank commandQueue{50, "CommandQueueThread's lock"};
inline constexpr LockRank chain{60, "DSChain::lock"};
inline constexpr LockRank graphRecipes{70, "FilterGraphFactory::recipesLock"};
inline constexpr LockRank graphCache{80, "FilterGraphFactory::cacheLock"};
inline constexpr LockRank decoderScan{90, "FilterGraphFactory::scanLock"};
inline constexpr LockRank rendererFilter{100, "FrameRenderer's filter lock"};
inline constexpr LockRank rendererReceive{110, "FrameRenderer::receiveLock"};
inline constexpr LockRank moskTrackLists{120, "the lock of ReadMoskTrackList"};
inline constexpr LockRank pngTrackMovies{120, "IsPngTrackMovie's lock"};

} // namespace LockRanks
