#include "Common/Renderer/Base/TextureCube.h"

#include <GLES2/gl2ext.h>

#include <cstdlib>

namespace vi {

TextureCube::TextureCube(const std::array<void*, kFaces>& faces,
                         const std::array<unsigned, kFaces>& widths,
                         const std::array<unsigned, kFaces>& heights, bool isStatic, bool repeat,
                         bool mirrored, bool linear, bool compressed)
    : Texture(nullptr, widths[0], heights[0], isStatic, repeat, mirrored, linear, compressed, 4,
              false),
      mFaceBuffers(faces.begin(), faces.end()),
      mFaceWidths(widths.begin(), widths.end()),
      mFaceHeights(heights.begin(), heights.end()) {
    mTarget = GL_TEXTURE_CUBE_MAP;
}

TextureCube::~TextureCube() {
    if (mIsDeletable) {
        for (void* face : mFaceBuffers) {
            free(face);
        }
    }
}

void TextureCube::update() {
    glBindTexture(mTarget, mTexture);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int i = 0; i < kFaces; ++i) {
        const GLenum face = GL_TEXTURE_CUBE_MAP_POSITIVE_X + i;
        const unsigned w = mFaceWidths[i];
        const unsigned h = mFaceHeights[i];
        void* pixels = mFaceBuffers[i];
        if (mIsCompressed) {
            glCompressedTexImage2D(face, 0, GL_ETC1_RGB8_OES, w, h, 0, (w * h) >> 1, pixels);
        } else if (mIsSubImageUse && mIsUploaded) {
            glTexSubImage2D(face, 0, 0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
        } else {
            glTexImage2D(face, 0, GL_RGBA, w, h, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
        }
    }
    if (!mIsCompressed && !(mIsSubImageUse && mIsUploaded)) {
        mIsUploaded = true;
    }
}

}  // namespace vi
