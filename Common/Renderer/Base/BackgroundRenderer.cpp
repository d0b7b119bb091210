#include "Common/Renderer/Base/BackgroundRenderer.h"

#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "embedded/Common/Renderer/Base/BackgroundRenderer.frag.h"
#include "embedded/Common/Renderer/Base/BackgroundRenderer.vert.h"

namespace vi {

BackgroundRenderer::BackgroundRenderer(Drawable& drawable)
    : Renderer(*getShaderProgram(), drawable), mTextureCoordsIndex(-1) {
    addAttribute("aPosition", drawable.mPositions2.data(), 2, drawable.mIsPositionsStatic);
    mTextureCoordsIndex = addAttribute("aTextureCoords", drawable.mTextureCoords.data(), 2,
                                       drawable.mIsTextureCoordsStatic);
    addTexture("uTexture", drawable.mTexture);
}

BackgroundRenderer::~BackgroundRenderer() {
    getShaderProgram()->destroy();
}

ShaderProgram* BackgroundRenderer::getShaderProgram() {
    static unsigned id = 0;
    if (id != 0) {
        ShaderProgram*& slot = ShaderProgram::getProgram(id);
        if (slot == nullptr) {
            // Another effect's list: it gets its own program under the same id.
            slot = new ShaderProgram(qam::embedded::BackgroundRenderer_vert,
                                     qam::embedded::BackgroundRenderer_frag, id);
        }
        return slot;
    }
    auto* program = new ShaderProgram(qam::embedded::BackgroundRenderer_vert,
                                      qam::embedded::BackgroundRenderer_frag, 0);
    id = program->getUniqueId();
    return ShaderProgram::addProgram(program);
}

void BackgroundRenderer::updateTextureCoords() {
    if (mTextureCoordsIndex == -1) {
        return;
    }
    if (mDrawable == nullptr) {
        qam::logErrorOnce(this, "BackgroundRenderer: no drawable to take coordinates from");
        return;
    }
    Attribute& attribute = *mAttributes[static_cast<size_t>(mTextureCoordsIndex)];
    // The upload below would read past the coordinates.
    if (attribute.mIsStatic && mDrawable->mTextureCoords.size() < mVertexCount) {
        qam::logErrorOnce(
            this, "BackgroundRenderer: %zu texture coordinates for %u vertices, kept the old",
            mDrawable->mTextureCoords.size(), mVertexCount);
        return;
    }
    attribute.mData = mDrawable->mTextureCoords.data();
    attribute.mVertexCount = &mVertexCount;
    if (attribute.mIsStatic) {
        glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(attribute.mBuffer));
        glBufferData(
            GL_ARRAY_BUFFER,
            static_cast<GLsizeiptr>(mVertexCount) * attribute.mComponents * sizeof(GLfloat),
            attribute.mData, GL_STATIC_DRAW);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
}

}  // namespace vi
