#include "Common/Tools/File.h"

#include <android/asset_manager.h>
#include <sys/stat.h>

#include <cstdio>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

constexpr const char* kSourcePath = "Common/Tools/File";

[[noreturn]] void failInvalidName(const std::string& name, const char* function, int line) {
    qam::fatalError("\"Invalid file name: \"" + name + "\"\"\n", kSourcePath, function, line);
}

}  // namespace

File::File() = default;

File::~File() {
    qam::forgetLoggedOnce(this);
}

File::File(const std::string& name, bool fromAssets) {
    if (fromAssets) {
        load(name);
    } else {
        readPath(name);
    }
}

void File::readPath(const std::string& path) {
    FILE* file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        failInvalidName(path, "File", 46);
    }
    // A directory opens, but its end offset can be huge: the buffer could not hold it.
    struct stat info;
    if (fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode)) {
        fclose(file);
        qam::logErrorOnce(this, "File is a directory: %s", path.c_str());
        return;
    }
    fseek(file, 0, SEEK_END);
    const long length = ftell(file);
    if (length < 0) {
        fclose(file);
        qam::logError("File empty: %s", path.c_str());
        return;
    }
    if (fseek(file, 0, SEEK_SET) != 0) {
        fclose(file);
        qam::logError("File seek error: %s", path.c_str());
        return;
    }
    mBuffer.resize(static_cast<size_t>(length));
    const size_t read = fread(mBuffer.data(), 1, mBuffer.size(), file);
    (void)read;  // short reads are not detected
    fclose(file);
}

void File::load(const std::string& name) {
    AAsset* asset = AAssetManager_open(getAssetManager(), name.c_str(), AASSET_MODE_UNKNOWN);
    if (asset == nullptr) {
        failInvalidName(name, "load", 88);
    }
    const off_t length = AAsset_getLength(asset);
    if (length < 0) {
        qam::logErrorOnce(this, "File: asset %s has no length, read as empty", name.c_str());
    }
    mBuffer.resize(length > 0 ? static_cast<size_t>(length) : 0);
    AAsset_read(asset, mBuffer.data(), mBuffer.size());
    AAsset_close(asset);
}

void* File::getBuffer() {
    return mBuffer.data();
}

unsigned File::getLength() const {
    return static_cast<unsigned>(mBuffer.size());
}

void File::write(const void* data, unsigned size) {
    if (data == nullptr && size != 0) {
        qam::logErrorOnce(this, "File write: no data for %u bytes, nothing written", size);
        return;
    }
    const auto* bytes = static_cast<const unsigned char*>(data);
    mBuffer.insert(mBuffer.end(), bytes, bytes + size);
}

int File::flush(const std::string& name, bool) {
    const std::string path = "/sdcard/" + name;
    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) {
        qam::logErrorOnce(this, "File flush: cannot open %s, %u bytes dropped", path.c_str(),
                          getLength());
        mBuffer.clear();
        return EOF;
    }
    fwrite(mBuffer.data(), 1, mBuffer.size(), file);
    const int result = fclose(file);
    mBuffer.clear();
    return result;
}

AAssetManager*& File::getAssetManager() {
    static AAssetManager* manager = nullptr;
    return manager;
}

}  // namespace vi
