#pragma once

#include <string>
#include <vector>

#include "Common/Platform/Export.h"

// The NDK's, from <android/asset_manager.h>: effect libraries need no Android header for it.
struct AAssetManager;

namespace vi {

// A whole file in memory: read from the application's assets or from a path, or built
// with write() and saved under "/sdcard/" by flush().
class TALVEQAM_EXPORT File {
  public:
    File();
    // Reads the asset `name` when `fromAssets`, else the file at path `name`. A missing
    // file or asset ends the process (status 46 or 88).
    File(const std::string& name, bool fromAssets);
    // Forgets what this file, or a model built on it, logged once.
    ~File();

    // Reads the asset `name` over whatever the buffer held.
    void load(const std::string& name);
    void* getBuffer();
    unsigned getLength() const;
    // Appends `size` bytes.
    void write(const void* data, unsigned size);
    // Writes the buffer to "/sdcard/" + name and empties it; returns fclose's result, or
    // EOF when the file could not be opened.
    int flush(const std::string& name, bool);

    // Where the effect library stores the application's asset manager.
    static AAssetManager*& getAssetManager();

  private:
    void readPath(const std::string& path);

    std::vector<unsigned char> mBuffer;
};

}  // namespace vi
