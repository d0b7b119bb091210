#include "Common/Renderer/Base/Background.h"

#include <cmath>

#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {

Background::Background(Texture& texture) : mTexture(&texture) {
    mDrawable.mMode = GL_TRIANGLE_STRIP;
    mDrawable.mDimension = 2;
    mDrawable.mModelMatrix = glm::mat4(1.0f);
    mDrawable.mOpacity = 1.0f;
    mDrawable.mTexture = &texture;
    mDrawable.mPositions2 = {{-1.0f, 1.0f}, {1.0f, 1.0f}, {-1.0f, -1.0f}, {1.0f, -1.0f}};
    mDrawable.mTextureCoords = {{0.0f, 0.0f}, {1.0f, 0.0f}, {0.0f, 1.0f}, {1.0f, 1.0f}};
    mRenderer = std::make_unique<BackgroundRenderer>(mDrawable);
}

Background::~Background() {
    qam::forgetLoggedOnce(this);
    mRenderer.reset();
    mDrawable.mPositions2 = {};
    mDrawable.mTextureCoords = {};
}

void Background::setScreenSize(unsigned width, unsigned height) {
    const float rx = float(width) / float(mTexture->mWidth);
    const float ry = float(height) / float(mTexture->mHeight);
    float u0 = 0.0f;
    float u1 = 1.0f;
    float v0 = 0.0f;
    float v1 = 1.0f;
    if (rx < ry) {
        const float d = std::fabs(rx / ry - 1.0f) * 0.5f;
        u0 = d;
        u1 = 1.0f - d;
    } else {
        const float d = std::fabs(ry / rx - 1.0f) * 0.5f;
        v0 = d;
        v1 = 1.0f - d;
    }
    mDrawable.mTextureCoords = {{u0, v0}, {u1, v0}, {u0, v1}, {u1, v1}};
    mRenderer->updateTextureCoords();
}

void Background::renderFrame() {
    // A short-lived background (the host's drawBgOnly makes one) destroys the shared program
    // when it goes: take the live one, made again if need be, rather than draw with a freed one.
    ShaderProgram* live = BackgroundRenderer::getShaderProgram();
    if (live != mRenderer->mProgram) {
        qam::logErrorOnce(this, "Background: shared program was destroyed, drawn with a new one");
        mRenderer->mProgram = live;
    }
    mRenderer->draw();
}

}  // namespace vi
