#pragma once

#include <cstdint>
#include <vector>

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNVector.h"
#include "Kinetra/Core/_TEXTURE_COLOR_BUFFER.h"

namespace Kinetra {

// The process-wide registry of named GL textures and named colour buffers of the Kinetra
// layers ("bg" is the background image). Upload options (wrap, filter, pixel format, data
// type) hold for the next upload only. Created on first use, destroyed by ReleaseInstance().
class TALVEQAM_EXPORT KNTextureManager {
  public:
    static KNTextureManager* getInstancePtr();
    static void ReleaseInstance();

    KNTextureManager(const KNTextureManager&) = delete;
    KNTextureManager& operator=(const KNTextureManager&) = delete;

    void setTextureWrapOption(const unsigned& wrap);
    void setTextureMagFilterOption(const unsigned& filter);
    void setTexturePixelFormat(const unsigned& format);
    void setTextureDataType(const unsigned& type);
    void initializeTextureProperty();

    // Uploads `pixels` under `name`, into the name's texture when there is one; returns its id.
    // Null pixels give the texture its size without contents.
    unsigned setTexture(const char* name, void* pixels, int width, int height);
    // Registers a texture made elsewhere; a known name gets the new id and size.
    void setTextureId(const char* name, unsigned id, int width, int height);
    void addTextureContext(const char* name, unsigned id, unsigned width, unsigned height,
                           bool generated);
    // The id registered under `name`, or 0.
    unsigned checkSameTexture(const char* name);
    unsigned getTextureID(const char* name);

    // Keeps a copy of `pixels` (width * height * 4 bytes) under `name`.
    void setTextureColor(const char* name, void* pixels, int width, int height);
    // The colour buffer of `name`, or null.
    _TEXTURE_COLOR_BUFFER* checkSameTextureColor(const char* name);
    _TEXTURE_COLOR_BUFFER* getTextureColor(const char* name);
    // Copies every field; the pixels are shared, not duplicated.
    void CopyTextureContext(_TEXTURE_COLOR_BUFFER* to, _TEXTURE_COLOR_BUFFER* from);

    // Upload `buffer` into a new texture, or into one face of the cube map `id`, and free its
    // pixels (every colour buffer sharing them forgets them too).
    unsigned generateTexture(_TEXTURE_COLOR_BUFFER* buffer, bool mipmap);
    void generateCubeTexture(_TEXTURE_COLOR_BUFFER* buffer, unsigned face, unsigned id);
    void replaceTextureData(const unsigned& id, void* pixels, int width, int height);
    void deleteTexture(const char* name);
    // Every record forgets its id without deleting it: the context that owned them is gone.
    void contextChanged();

    // Crops the first four coordinates of a strip to the centre of the "bg" texture so that
    // it fills a width x height screen.
    void normalizeTextureCoord(std::vector<KNVector3D<float>>& uv, int width, int height);

  private:
    struct TextureRecord {
        uint32_t id;
        char name[128];
        int32_t width;
        int32_t height;
        int32_t generated;  // made here rather than handed in by setTextureId
    };

    KNTextureManager();
    ~KNTextureManager();

    TextureRecord* findRecord(const char* name);
    _TEXTURE_COLOR_BUFFER* findColorBuffer(const char* name);
    // False (logged once) when GL would read `buffer` past its pixels.
    bool readable(const _TEXTURE_COLOR_BUFFER* buffer, const char* caller);
    void upload(unsigned target, const _TEXTURE_COLOR_BUFFER& buffer);
    // Keeps pixels a listed buffer lets go of until someone uploads them or the manager goes.
    void retire(unsigned char* pixels);
    void releasePixels(_TEXTURE_COLOR_BUFFER* buffer);

    static KNTextureManager* m_pInstance;

    std::vector<_TEXTURE_COLOR_BUFFER*> mColorBuffers;
    std::vector<TextureRecord> mTextures;
    unsigned mWrapOption;
    unsigned mFilterOption;
    unsigned mPixelFormat;
    unsigned mDataType;
};

}  // namespace Kinetra
