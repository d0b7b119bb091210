#include "Common/Renderer/Base/Texture.h"

#include <GLES2/gl2ext.h>
#include <strings.h>

#include <algorithm>
#include <cstdlib>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

GLenum formatOf(unsigned channels) {
    switch (channels) {
        case 1:
            return GL_ALPHA;
        case 3:
            return GL_RGB;
        case 4:
            return GL_RGBA;
        default:
            return 0;  // left unset
    }
}

// Decided once per process from the first context's renderer.
bool gpuAllowsSubImage() {
    static const bool allowed = [] {
        const GLubyte* renderer = glGetString(GL_RENDERER);
        if (renderer == nullptr) {
            qam::logError("Texture: no GL renderer to check, taken as not Mali");
        }
        return !Texture::isMaliRenderer(reinterpret_cast<const char*>(renderer));
    }();
    return allowed;
}

}  // namespace

// Textures made while no effect is current register here instead of nowhere.
static std::vector<Texture*> sUnownedTextures;

std::vector<Texture*>* Texture::mAllTextures = &sUnownedTextures;
bool Texture::mIsNeedToRecycle = false;
bool Texture::mIsSubImageUse = false;

bool Texture::isMaliRenderer(const char* renderer) {
    return renderer != nullptr && strncasecmp(renderer, "Mali", 4) == 0;
}

Texture::Texture(void* buffer, unsigned width, unsigned height, bool isStatic, bool repeat,
                 bool mirrored, bool linear, bool compressed, unsigned channels, bool isFloat)
    : mKind(kPlain),
      mTexture(0),
      mBuffer(buffer),
      mWidth(width),
      mHeight(height),
      mIsUploaded(false),
      mIsStatic(isStatic),
      mIsRepeat(repeat),
      mIsMirrored(mirrored),
      mIsLinear(linear),
      mIsCompressed(compressed),
      mIsDeletable(false),
      mSize(float(width), float(height)),
      mTexelSize(1.0f / float(width), 1.0f / float(height)),
      mTarget(GL_TEXTURE_2D),
      mFormat(formatOf(channels)),
      mType(isFloat ? GL_FLOAT : GL_UNSIGNED_BYTE) {
    mAllTextures->push_back(this);
}

Texture::~Texture() {
    if (mTexture != 0) {
        glBindTexture(mTarget, 0);
        glDeleteTextures(1, &mTexture);
        mTexture = 0;
    }
    if (mIsDeletable) {
        free(mBuffer);
    }
    std::vector<Texture*>& all = *mAllTextures;
    const auto found = std::find(all.begin(), all.end(), this);
    if (found != all.end()) {
        all.erase(found);
    }
}

void* Texture::getBuffer() {
    return mBuffer;
}

void Texture::setDeletable(bool deletable) {
    mIsDeletable = deletable;
}

void Texture::update() {
    glBindTexture(mTarget, mTexture);
    // The pack alignment, not the unpack one: uploads rely on the default of 4.
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    if (mIsCompressed) {
        glCompressedTexImage2D(mTarget, 0, GL_ETC1_RGB8_OES, mWidth, mHeight, 0,
                               (mWidth * mHeight) >> 1, mBuffer);
    } else if (mIsSubImageUse && mIsUploaded) {
        glTexSubImage2D(mTarget, 0, 0, 0, mWidth, mHeight, mFormat, mType, mBuffer);
    } else {
        glTexImage2D(mTarget, 0, mFormat, mWidth, mHeight, 0, mFormat, mType, mBuffer);
        mIsUploaded = true;
    }
}

void Texture::allocate() {
    if (mTexture != 0 && glIsTexture(mTexture) == GL_TRUE) {
        return;
    }
    mIsSubImageUse = gpuAllowsSubImage();
    const GLint filter = mIsLinear ? GL_LINEAR : GL_NEAREST;
    const GLint wrap = !mIsRepeat ? GL_CLAMP_TO_EDGE : mIsMirrored ? GL_MIRRORED_REPEAT : GL_REPEAT;
    glGenTextures(1, &mTexture);
    if (mIsStatic) {
        update();
    } else {
        glBindTexture(mTarget, mTexture);
    }
    glTexParameteri(mTarget, GL_TEXTURE_MAG_FILTER, filter);
    glTexParameteri(mTarget, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(mTarget, GL_TEXTURE_WRAP_T, wrap);
    glTexParameteri(mTarget, GL_TEXTURE_WRAP_S, wrap);
    if (mIsNeedToRecycle && mIsStatic) {
        if (mIsDeletable) {
            free(mBuffer);
        }
        mBuffer = nullptr;
    }
}

void Texture::contextChanged() {
    mTexture = 0;
    mIsUploaded = false;
}

void Texture::bind(unsigned location, unsigned unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    if (!mIsStatic) {
        update();
    } else {
        glBindTexture(mTarget, mTexture);
    }
    glUniform1i(location, unit);
}

}  // namespace vi
