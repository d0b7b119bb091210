#pragma once

#include <GLES2/gl2.h>

#include <glm/vec2.hpp>
#include <vector>

#include "Common/Platform/Export.h"

namespace vi {

// One GL texture and the client-side pixels it is filled from. Textures list themselves in
// the current effect's list (mAllTextures), which the host walks to rebuild them on a new
// EGL context and to release pixel buffers.
class TALVEQAM_EXPORT Texture {
  public:
    // `channels` 1, 3 or 4 pick ALPHA, RGB or RGBA; `isFloat` uploads GL_FLOAT texels.
    // Creates no GL object: allocate() does.
    Texture(void* buffer, unsigned width, unsigned height, bool isStatic, bool repeat,
            bool mirrored, bool linear, bool compressed, unsigned channels, bool isFloat);
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;
    virtual ~Texture();

    virtual void* getBuffer();
    // Binds and uploads the buffer.
    virtual void update();
    // Creates the GL object unless the held name is still a live texture.
    virtual void allocate();
    // Forgets the GL name without deleting it: its context is gone.
    virtual void contextChanged();
    // Binds to `unit` and points the sampler uniform at `location` to it; a texture that
    // is not static is uploaded again first.
    virtual void bind(unsigned location, unsigned unit);

    void setDeletable(bool deletable);

    enum Kind : unsigned { kPlain = 0, kRenderTarget = 1 };

    unsigned mKind;
    GLuint mTexture;
    void* mBuffer;  // owned (free()) only when mIsDeletable
    unsigned mWidth;
    unsigned mHeight;
    bool mIsUploaded;
    bool mIsStatic;
    bool mIsRepeat;
    bool mIsMirrored;
    bool mIsLinear;
    bool mIsCompressed;  // mBuffer holds ETC1 blocks
    bool mIsDeletable;
    glm::vec2 mSize;
    glm::vec2 mTexelSize;
    GLenum mTarget;
    GLenum mFormat;
    GLenum mType;

    static std::vector<Texture*>* mAllTextures;
    // Set by the host: static textures drop their pixels once uploaded.
    static bool mIsNeedToRecycle;
    // Whether re-uploads use glTexSubImage2D (not on Mali GPUs).
    static bool mIsSubImageUse;

    // Whether a GL_RENDERER string names a Mali GPU.
    static bool isMaliRenderer(const char* renderer);
};

}  // namespace vi
