#pragma once

// The four asset calls the library uses. Android has them in the NDK; on Linux they
// are served from a directory (see AssetDirectory.h).
#if defined(__ANDROID__)
#include <android/asset_manager.h>
#else
#include <sys/types.h>

#include <cstddef>

extern "C" {
typedef struct AAssetManager AAssetManager;
typedef struct AAsset AAsset;

enum {
    AASSET_MODE_UNKNOWN = 0,
    AASSET_MODE_RANDOM = 1,
    AASSET_MODE_STREAMING = 2,
    AASSET_MODE_BUFFER = 3,
};

AAsset* AAssetManager_open(AAssetManager* manager, const char* fileName, int mode);
off_t AAsset_getLength(AAsset* asset);
int AAsset_read(AAsset* asset, void* buffer, size_t count);
void AAsset_close(AAsset* asset);
}
#endif
