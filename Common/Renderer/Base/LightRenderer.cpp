#include "Common/Renderer/Base/LightRenderer.h"

#include "Common/Renderer/Base/ShaderProgram.h"
#include "embedded/Common/Renderer/Base/LightRenderer.frag.h"
#include "embedded/Common/Renderer/Base/LightRenderer.vert.h"

namespace vi {
namespace {

ShaderProgram* gLightProgram = nullptr;
int gLightProgramUsers = 0;

}  // namespace

LightRenderer::LightRenderer(Drawable& drawable) : Renderer(*getShaderProgram(), drawable) {
    if (drawable.mDimension == 3) {
        addAttribute("aPosition", drawable.mPositions3.data(), 3, drawable.mIsPositionsStatic);
    } else {
        addAttribute("aPosition", drawable.mPositions2.data(), 2, drawable.mIsPositionsStatic);
    }
    addAttribute("aNormal", drawable.mNormals.data(), 3, drawable.mIsNormalsStatic);
    addAttribute("aTextureCoord", drawable.mTextureCoords.data(), 2,
                 drawable.mIsTextureCoordsStatic);
    addTexture("uTexture", drawable.mTexture);
}

LightRenderer::~LightRenderer() {
    if (gLightProgram == mProgram && --gLightProgramUsers == 0) {
        delete gLightProgram;
        gLightProgram = nullptr;
    }
}

ShaderProgram* LightRenderer::getShaderProgram() {
    ++gLightProgramUsers;
    if (gLightProgram == nullptr) {
        gLightProgram = new ShaderProgram(qam::embedded::LightRenderer_vert,
                                          qam::embedded::LightRenderer_frag, 0);
    }
    return gLightProgram;
}

}  // namespace vi
