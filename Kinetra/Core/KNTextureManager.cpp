#include "Kinetra/Core/KNTextureManager.h"

#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "Common/Platform/Log.h"

namespace Kinetra {

namespace {

constexpr unsigned kDefaultWrap = GL_MIRRORED_REPEAT;
constexpr unsigned kDefaultFilter = GL_LINEAR;
constexpr unsigned kDefaultPixelFormat = GL_RGBA;
constexpr unsigned kDefaultDataType = GL_UNSIGNED_BYTE;

// Pixels a listed buffer let go of: a copy made with CopyTextureContext may still use them.
// They belong to the one manager, but are kept outside it: its layout is fixed.
std::vector<unsigned char*> gRetiredPixels;

// Whole names compare: a longer one does not find its record, which holds 127 characters.
bool sameName(const char* stored, const char* name) {
    return strcmp(stored, name) == 0;
}

void copyName(char (&to)[128], const char* from) {
    snprintf(to, sizeof to, "%s", from);
}

// Bytes of one pixel as GL reads it; 0 for combinations GL rejects without reading.
int64_t bytesPerPixel(unsigned format, unsigned type) {
    const int64_t channels = format == GL_RGB ? 3 : 4;
    switch (type) {
        case GL_UNSIGNED_BYTE:
            return channels;
        case GL_UNSIGNED_SHORT_5_6_5:
            return format == GL_RGB ? 2 : 0;
        case GL_UNSIGNED_SHORT_4_4_4_4:
        case GL_UNSIGNED_SHORT_5_5_5_1:
            return format == GL_RGBA ? 2 : 0;
        case GL_HALF_FLOAT_OES:
            return 2 * channels;
        case GL_FLOAT:
            return 4 * channels;
        default:
            return 0;
    }
}

unsigned uploadFormat(const _TEXTURE_COLOR_BUFFER& buffer) {
    return buffer.channels == 3 ? GL_RGB : GL_RGBA;
}

}  // namespace

KNTextureManager* KNTextureManager::m_pInstance = nullptr;

KNTextureManager* KNTextureManager::getInstancePtr() {
    if (m_pInstance == nullptr) {
        m_pInstance = new KNTextureManager();
    }
    return m_pInstance;
}

void KNTextureManager::ReleaseInstance() {
    delete m_pInstance;
    m_pInstance = nullptr;
}

KNTextureManager::KNTextureManager()
    : mWrapOption(kDefaultWrap),
      mFilterOption(kDefaultFilter),
      mPixelFormat(kDefaultPixelFormat),
      mDataType(kDefaultDataType) {}

KNTextureManager::~KNTextureManager() {
    for (const TextureRecord& record : mTextures) {
        if (record.id != 0) {
            glDeleteTextures(1, &record.id);
        }
    }
    for (_TEXTURE_COLOR_BUFFER* buffer : mColorBuffers) {
        releasePixels(buffer);
    }
    for (_TEXTURE_COLOR_BUFFER* buffer : mColorBuffers) {
        delete buffer;
    }
    for (unsigned char* pixels : gRetiredPixels) {
        free(pixels);
    }
    gRetiredPixels.clear();
    qam::forgetLoggedOnce(this);
}

void KNTextureManager::setTextureWrapOption(const unsigned& wrap) {
    mWrapOption = wrap;
}

void KNTextureManager::setTextureMagFilterOption(const unsigned& filter) {
    mFilterOption = filter;
}

void KNTextureManager::setTexturePixelFormat(const unsigned& format) {
    mPixelFormat = format;
}

void KNTextureManager::setTextureDataType(const unsigned& type) {
    mDataType = type;
}

void KNTextureManager::initializeTextureProperty() {
    mWrapOption = kDefaultWrap;
    mFilterOption = kDefaultFilter;
    mPixelFormat = kDefaultPixelFormat;
    mDataType = kDefaultDataType;
}

unsigned KNTextureManager::setTexture(const char* name, void* pixels, int width, int height) {
    // Pixels and size go to GL as given (null pixels: storage without contents); the name is
    // compared as a string.
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager::setTexture: null name, upload dropped");
        return 0;
    }
    if (mPixelFormat == GL_LUMINANCE) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }
    GLuint id = checkSameTexture(name);
    const bool generated = id == 0;
    if (generated) {
        glGenTextures(1, &id);
    }
    glBindTexture(GL_TEXTURE_2D, id);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLfloat>(mWrapOption));
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLfloat>(mWrapOption));
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLfloat>(mFilterOption));
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLfloat>(mFilterOption));
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(mPixelFormat), width, height, 0, mPixelFormat,
                 mDataType, pixels);
    // A record whose id was forgotten with its context takes the new one.
    TextureRecord* record = findRecord(name);
    if (record == nullptr) {
        addTextureContext(name, id, static_cast<unsigned>(width), static_cast<unsigned>(height),
                          true);
    } else {
        record->id = id;
        record->width = width;
        record->height = height;
        record->generated = record->generated || generated;
    }
    initializeTextureProperty();
    return id;
}

void KNTextureManager::setTextureId(const char* name, unsigned id, int width, int height) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager::setTextureId: null name, ignored");
        return;
    }
    TextureRecord* record = findRecord(name);
    if (record == nullptr) {
        addTextureContext(name, id, static_cast<unsigned>(width), static_cast<unsigned>(height),
                          false);
        return;
    }
    record->id = id;
    record->width = width;
    record->height = height;
    record->generated = false;
}

void KNTextureManager::addTextureContext(const char* name, unsigned id, unsigned width,
                                         unsigned height, bool generated) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager::addTextureContext: null name, ignored");
        return;
    }
    TextureRecord record{};
    record.id = id;
    copyName(record.name, name);
    record.width = static_cast<int32_t>(width);
    record.height = static_cast<int32_t>(height);
    record.generated = generated;
    mTextures.push_back(record);
}

unsigned KNTextureManager::checkSameTexture(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager: texture lookup with a null name");
        return 0;
    }
    const TextureRecord* record = findRecord(name);
    return record == nullptr ? 0 : record->id;
}

unsigned KNTextureManager::getTextureID(const char* name) {
    return checkSameTexture(name);
}

void KNTextureManager::setTextureColor(const char* name, void* pixels, int width, int height) {
    // The name and `size` bytes of pixels are read here; a size no int32 holds is no size.
    const int64_t size = static_cast<int64_t>(width) * height * 4;
    if (name == nullptr || (pixels == nullptr && size != 0) || size < 0 ||
        size > std::numeric_limits<int32_t>::max()) {
        qam::logErrorOnce(this, "KNTextureManager::setTextureColor: %s, ignored",
                          name == nullptr     ? "null name"
                          : pixels == nullptr ? "null pixels"
                                              : "bad size");
        return;
    }
    auto* copy = static_cast<unsigned char*>(malloc(static_cast<size_t>(size)));
    if (copy == nullptr && size != 0) {
        qam::logErrorOnce(this, "KNTextureManager::setTextureColor: out of memory for %s", name);
        return;
    }
    if (size != 0) {
        memcpy(copy, pixels, static_cast<size_t>(size));
    }
    _TEXTURE_COLOR_BUFFER* buffer = findColorBuffer(name);
    if (buffer == nullptr) {
        buffer = new _TEXTURE_COLOR_BUFFER{};
        mColorBuffers.push_back(buffer);
    } else {
        retire(buffer->pixels);
    }
    buffer->width = width;
    buffer->height = height;
    buffer->channels = 4;
    buffer->size = static_cast<int32_t>(size);
    copyName(buffer->name, name);
    buffer->pixels = copy;
}

_TEXTURE_COLOR_BUFFER* KNTextureManager::checkSameTextureColor(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager: colour buffer lookup with a null name");
        return nullptr;
    }
    return findColorBuffer(name);
}

_TEXTURE_COLOR_BUFFER* KNTextureManager::getTextureColor(const char* name) {
    return checkSameTextureColor(name);
}

void KNTextureManager::CopyTextureContext(_TEXTURE_COLOR_BUFFER* to, _TEXTURE_COLOR_BUFFER* from) {
    if (to == nullptr || from == nullptr) {
        qam::logErrorOnce(this,
                          "KNTextureManager::CopyTextureContext: null buffer, nothing copied");
        return;
    }
    if (to != from &&
        std::find(mColorBuffers.begin(), mColorBuffers.end(), to) != mColorBuffers.end()) {
        retire(to->pixels);
    }
    *to = *from;
}

unsigned KNTextureManager::generateTexture(_TEXTURE_COLOR_BUFFER* buffer, bool mipmap) {
    if (!readable(buffer, "generateTexture")) {
        return 0;
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                    static_cast<GLint>(mipmap ? GL_LINEAR_MIPMAP_LINEAR : mFilterOption));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(mFilterOption));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(mWrapOption));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLint>(mWrapOption));
    upload(GL_TEXTURE_2D, *buffer);
    if (mipmap) {
        glGenerateMipmap(GL_TEXTURE_2D);
    }
    releasePixels(buffer);
    return id;
}

void KNTextureManager::generateCubeTexture(_TEXTURE_COLOR_BUFFER* buffer, unsigned face,
                                           unsigned id) {
    if (!readable(buffer, "generateCubeTexture")) {
        return;
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);  // rows are packed, as in generateTexture
    glBindTexture(GL_TEXTURE_CUBE_MAP, id);
    upload(face, *buffer);
    releasePixels(buffer);
}

void KNTextureManager::replaceTextureData(const unsigned& id, void* pixels, int width, int height) {
    glBindTexture(GL_TEXTURE_2D, id);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, mPixelFormat, mDataType, pixels);
    initializeTextureProperty();
}

void KNTextureManager::deleteTexture(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager::deleteTexture: null name");
        return;
    }
    for (auto record = mTextures.begin(); record != mTextures.end(); ++record) {
        if (sameName(record->name, name)) {
            glDeleteTextures(1, &record->id);
            mTextures.erase(record);
            return;
        }
    }
}

void KNTextureManager::contextChanged() {
    for (TextureRecord& record : mTextures) {
        record.id = 0;
    }
}

void KNTextureManager::normalizeTextureCoord(std::vector<KNVector3D<float>>& uv, int width,
                                             int height) {
    const TextureRecord* background = nullptr;
    for (const TextureRecord& record : mTextures) {
        if (strcmp(record.name, "bg") == 0) {
            background = &record;
        }
    }
    if (background == nullptr || background->width == 0 || background->height == 0) {
        return;
    }
    if (uv.size() < 4) {  // the four corners are written
        qam::logErrorOnce(this,
                          "KNTextureManager::normalizeTextureCoord: fewer than four "
                          "coordinates, left as they are");
        return;
    }
    const float sx = static_cast<float>(width) / static_cast<float>(background->width);
    const float sy = static_cast<float>(height) / static_cast<float>(background->height);
    float u0 = 0, u1 = 1, v0 = 0, v1 = 1;
    if (sx < sy) {
        const float margin = std::fabs(sx / sy - 1) / 2;
        u0 = margin;
        u1 = 1 - margin;
    } else {
        const float margin = std::fabs(sy / sx - 1) / 2;
        v0 = margin;
        v1 = 1 - margin;
    }
    // A two-triangle strip from the top-left corner.
    uv[0] = {u0, v1, 0};
    uv[1] = {u1, v1, 0};
    uv[2] = {u0, v0, 0};
    uv[3] = {u1, v0, 0};
}

KNTextureManager::TextureRecord* KNTextureManager::findRecord(const char* name) {
    for (TextureRecord& record : mTextures) {
        if (sameName(record.name, name)) {
            return &record;
        }
    }
    return nullptr;
}

_TEXTURE_COLOR_BUFFER* KNTextureManager::findColorBuffer(const char* name) {
    for (_TEXTURE_COLOR_BUFFER* buffer : mColorBuffers) {
        if (sameName(buffer->name, name)) {
            return buffer;
        }
    }
    return nullptr;
}

bool KNTextureManager::readable(const _TEXTURE_COLOR_BUFFER* buffer, const char* caller) {
    if (buffer == nullptr) {
        qam::logErrorOnce(this, "KNTextureManager::%s: null buffer, nothing uploaded", caller);
        return false;
    }
    // Null pixels make storage without contents, and GL reads nothing for an empty or
    // negative size.
    if (buffer->pixels == nullptr || buffer->width <= 0 || buffer->height <= 0) {
        return true;
    }
    const int64_t needed = static_cast<int64_t>(buffer->width) * buffer->height *
                           bytesPerPixel(uploadFormat(*buffer), mDataType);
    if (buffer->size < needed) {
        qam::logErrorOnce(this,
                          "KNTextureManager::%s: buffer %.127s is %dx%d in %d bytes, nothing "
                          "uploaded",
                          caller, buffer->name, buffer->width, buffer->height, buffer->size);
        return false;
    }
    return true;
}

void KNTextureManager::upload(unsigned target, const _TEXTURE_COLOR_BUFFER& buffer) {
    const unsigned format = uploadFormat(buffer);
    glTexImage2D(target, 0, static_cast<GLint>(format), buffer.width, buffer.height, 0, format,
                 mDataType, buffer.pixels);
}

void KNTextureManager::retire(unsigned char* pixels) {
    if (pixels != nullptr &&
        std::find(gRetiredPixels.begin(), gRetiredPixels.end(), pixels) == gRetiredPixels.end()) {
        gRetiredPixels.push_back(pixels);
    }
}

void KNTextureManager::releasePixels(_TEXTURE_COLOR_BUFFER* buffer) {
    unsigned char* pixels = buffer->pixels;
    if (pixels == nullptr) {
        return;
    }
    for (_TEXTURE_COLOR_BUFFER* listed : mColorBuffers) {
        if (listed->pixels == pixels) {
            listed->pixels = nullptr;
        }
    }
    gRetiredPixels.erase(std::remove(gRetiredPixels.begin(), gRetiredPixels.end(), pixels),
                         gRetiredPixels.end());
    free(pixels);
    buffer->pixels = nullptr;
}

}  // namespace Kinetra
