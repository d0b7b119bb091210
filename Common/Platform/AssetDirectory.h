#pragma once

#include <string>

#include "Common/Platform/Export.h"

// The NDK's, from <android/asset_manager.h>: effect libraries need no Android header for it.
struct AAssetManager;

namespace vi {

// Linux only: an asset manager whose assets are the files below a directory, for tools
// and tests that host effects off the device. Store it with vi::File::getAssetManager().
class TALVEQAM_EXPORT AssetDirectory {
  public:
    static AAssetManager* open(const std::string& directory);
    static void close(AAssetManager* manager);
};

}  // namespace vi
