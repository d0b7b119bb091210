#include "Common/Native/InstanceEntry.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"

namespace qam::host {
namespace {

constexpr int kNoBuffer = -1;

// A renderer whose program an effect took away can be neither probed nor rebuilt; it is
// passed over rather than taken as a lost context on every frame.
bool hasProgram(const vi::Renderer& renderer) {
    if (renderer.mProgram == nullptr) {
        qam::logErrorOnce(&renderer, "Renderer without a shader program, not probed nor rebuilt");
        return false;
    }
    return true;
}

// Whether the effect's first GL object still exists on the current context.
bool resourcesAlive(const vi::Effect& effect) {
    if (!effect.mRenderers.empty()) {
        const vi::Renderer* first = effect.mRenderers.front();
        return !hasProgram(*first) || glIsProgram(first->mProgram->mProgram) == GL_TRUE;
    }
    for (const vi::Texture* texture : effect.mTextureList) {
        if (texture->mTexture != 0) {
            return glIsTexture(texture->mTexture) != 0;
        }
    }
    return true;
}

void forgetGLObjects(vi::Effect& effect) {
    for (vi::Renderer* renderer : effect.mRenderers) {
        if (renderer->mProgram != nullptr) {
            renderer->mProgram->mProgram = 0;
        }
        renderer->mIndexBuffer = kNoBuffer;
        for (auto& attribute : renderer->mAttributes) {
            attribute->mBuffer = kNoBuffer;
        }
    }
    for (vi::Texture* texture : effect.mTextureList) {
        texture->contextChanged();
    }
}

void rebuildRenderer(vi::Renderer& renderer) {
    if (!hasProgram(renderer)) {
        return;
    }
    renderer.mProgram->init();
    const GLuint program = renderer.mProgram->mProgram;
    const vi::Drawable* drawable = renderer.mDrawable;
    if (drawable != nullptr && !drawable->mIndices.empty()) {
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        renderer.mIndexBuffer = static_cast<int>(buffer);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                     static_cast<GLsizeiptr>(drawable->mIndices.size() * sizeof(uint16_t)),
                     drawable->mIndices.data(), GL_STATIC_DRAW);
    }
    for (auto& attribute : renderer.mAttributes) {
        // The new program may place the attribute elsewhere; draw reads the record.
        const GLint location = glGetAttribLocation(program, attribute->mName.c_str());
        attribute->mLocation = location;
        if (location == -1) {
            continue;
        }
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        attribute->mBuffer = static_cast<int>(buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        const auto bytes =
            static_cast<GLsizeiptr>(renderer.mVertexCount) * attribute->mComponents * 4;
        glBufferData(GL_ARRAY_BUFFER, bytes, attribute->mData,
                     attribute->mIsStatic ? GL_STATIC_DRAW : GL_STREAM_DRAW);
        glEnableVertexAttribArray(static_cast<GLuint>(location));
        glVertexAttribPointer(static_cast<GLuint>(location),
                              static_cast<GLint>(attribute->mComponents), GL_FLOAT, GL_FALSE, 0,
                              nullptr);
    }
    for (auto& uniform : renderer.mUniforms) {
        uniform->mLocation = glGetUniformLocation(program, uniform->mName.c_str());
    }
}

}  // namespace

bool enterInstance(vi::Effect& effect) {
    effect.makeCurrent();
    void* const context = eglGetCurrentContext();
    if (context == effect.mEglContext && resourcesAlive(effect)) {
        return true;
    }
    effect.mEglContext = context;
    forgetGLObjects(effect);
    return false;
}

void enterInstanceAndNotify(vi::Effect& effect) {
    if (!enterInstance(effect)) {
        effect.onContextLost();
    }
}

void rebuildGLObjects(vi::Effect& effect) {
    if (effect.mEglContext == EGL_NO_CONTEXT) {
        qam::logError("WARNING: No EGL Context!!!!!");
    }
    for (vi::Renderer* renderer : effect.mRenderers) {
        rebuildRenderer(*renderer);
    }
    for (vi::Texture* texture : effect.mTextureList) {
        texture->allocate();
    }
}

}  // namespace qam::host
