#pragma once

#include <string>
#include <vector>

#include "examples/effects/common/SampleImage.h"

namespace qam::samples {

// The images an effect makes for itself, registered by name with Kinetra::KNTextureManager so
// that the layers' by-name setters find them. The manager holds the GL textures; this keeps
// the pixels to upload them again on a new context, and removes its names when it goes.
class NamedTextures {
  public:
    NamedTextures() = default;
    ~NamedTextures();
    NamedTextures(const NamedTextures&) = delete;
    NamedTextures& operator=(const NamedTextures&) = delete;

    // Keeps `image` under `name`, to be uploaded with the given GL wrap mode and filter.
    void add(const char* name, SampleImage image, unsigned wrap, unsigned filter);
    // Uploads every image, into its name's texture when the manager still has one.
    void upload();
    // The context is gone: the manager forgets every texture name it holds, ours included.
    void contextChanged();
    // The texture of `name`, or 0.
    unsigned id(const char* name) const;

  private:
    struct Entry {
        std::string name;
        SampleImage image;
        unsigned wrap;
        unsigned filter;
    };
    std::vector<Entry> mEntries;
    bool mUploaded = false;
};

}  // namespace qam::samples
