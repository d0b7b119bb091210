// The asset calls of Android's NDK, declared by Debian's copy of its header, over a directory.
#include <android/asset_manager.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "Common/Platform/AssetDirectory.h"
#include "Common/Platform/Log.h"

struct AAssetManager {
    std::string directory;
};

struct AAsset {
    FILE* file;
    off_t length;
};

namespace vi {

AAssetManager* AssetDirectory::open(const std::string& directory) {
    return new AAssetManager{directory};
}

void AssetDirectory::close(AAssetManager* manager) {
    delete manager;
}

}  // namespace vi

extern "C" {

AAsset* AAssetManager_open(AAssetManager* manager, const char* fileName, int /*mode*/) {
    if (manager == nullptr || fileName == nullptr) {
        qam::logError("AAssetManager_open: no asset manager or no name");
        return nullptr;
    }
    FILE* file = fopen((manager->directory + "/" + fileName).c_str(), "rb");
    if (file == nullptr) {
        return nullptr;
    }
    struct stat info;
    if (fstat(fileno(file), &info) != 0 || !S_ISREG(info.st_mode)) {
        fclose(file);  // directories are not assets
        return nullptr;
    }
    fseeko(file, 0, SEEK_END);
    const off_t length = ftello(file);
    fseeko(file, 0, SEEK_SET);
    return new AAsset{file, length < 0 ? 0 : length};
}

off_t AAsset_getLength(AAsset* asset) {
    return asset->length;
}

int AAsset_read(AAsset* asset, void* buffer, size_t count) {
    return static_cast<int>(fread(buffer, 1, count, asset->file));
}

void AAsset_close(AAsset* asset) {
    fclose(asset->file);
    delete asset;
}
}
