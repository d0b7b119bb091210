#include "Common/Renderer/Base/Renderer.h"

#include <algorithm>

#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/Implementation/DrawableMatrices.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {
namespace {

constexpr int kNoBuffer = -1;

int generateBuffer() {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    return static_cast<int>(buffer);
}

void deleteBuffer(int buffer) {
    const GLuint name = static_cast<GLuint>(buffer);
    glDeleteBuffers(1, &name);
}

GLsizeiptr attributeBytes(const Renderer::Attribute& attribute) {
    return static_cast<GLsizeiptr>(*attribute.mVertexCount) * attribute.mComponents *
           sizeof(GLfloat);
}

}  // namespace

// Renderers made while no effect is current register here instead of nowhere.
static std::vector<Renderer*> sUnownedRenderers;

std::vector<Renderer*>* Renderer::mAllRenderers = &sUnownedRenderers;

Renderer::Renderer(ShaderProgram& program, Drawable& drawable)
    : mProgram(&program), mIndexBuffer(kNoBuffer), mVertexCount(0), mDrawable(&drawable) {
    if (!drawable.mIndices.empty()) {
        mIndexBuffer = generateBuffer();
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLuint>(mIndexBuffer));
        const GLsizeiptr bytes = static_cast<GLsizeiptr>(drawable.mIndices.size() * 2) & ~1;
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, bytes, drawable.mIndices.data(), GL_STATIC_DRAW);
    }
    mVertexCount = countVertices();
    addUniform("uModelMatrix", &drawable.mModelMatrix[0][0], Uniform::kMat4, 1);
    addUniform("uViewMatrix", &(*Drawable::mViewMatrix)[0][0], Uniform::kMat4, 1);
    addUniform("uNormalMatrix", &drawable.mNormalMatrix[0][0], Uniform::kMat3, 1);
    addUniform("uProjectionMatrix", &(*Drawable::mProjectionMatrix)[0][0], Uniform::kMat4, 1);
    addUniform("uModelViewProjectionMatrix", &drawable.mModelViewProjectionMatrix[0][0],
               Uniform::kMat4, 1);
    addUniform("uOpacity", &drawable.mOpacity, Uniform::kFloat, 1);
    mAllRenderers->push_back(this);
}

Renderer::~Renderer() {
    qam::forgetLoggedOnce(this);
    if (mIndexBuffer != kNoBuffer) {
        deleteBuffer(mIndexBuffer);
    }
    for (const auto& attribute : mAttributes) {
        if (attribute->mBuffer != kNoBuffer) {
            deleteBuffer(attribute->mBuffer);
        }
    }
    std::vector<Renderer*>& all = *mAllRenderers;
    const auto found = std::find(all.begin(), all.end(), this);
    if (found != all.end()) {
        all.erase(found);
    }
}

void Renderer::setDrawable(Drawable* drawable) {
    mDrawable = drawable;
}

unsigned Renderer::countVertices() const {
    const size_t count =
        mDrawable->mDimension == 3 ? mDrawable->mPositions3.size() : mDrawable->mPositions2.size();
    return static_cast<unsigned>(count);
}

int Renderer::addAttribute(const std::string& name, const void* data, unsigned components,
                           bool isStatic) {
    // Null data is valid: glBufferData then only allocates the buffer.
    auto attribute = std::make_unique<Attribute>(
        Attribute{name, kNoBuffer, -1, data, &mVertexCount, components, isStatic});
    attribute->mLocation = glGetAttribLocation(mProgram->mProgram, name.c_str());
    if (attribute->mLocation == -1) {
        return -1;
    }
    attribute->mBuffer = generateBuffer();
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(attribute->mBuffer));
    glBufferData(GL_ARRAY_BUFFER, attributeBytes(*attribute), data,
                 isStatic ? GL_STATIC_DRAW : GL_STREAM_DRAW);
    const GLuint location = static_cast<GLuint>(attribute->mLocation);
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, static_cast<GLint>(components), GL_FLOAT, GL_FALSE, 0, nullptr);
    mAttributes.push_back(std::move(attribute));
    return static_cast<int>(mAttributes.size()) - 1;
}

int Renderer::addUniform(const std::string& name, const void* data, Uniform::UniformType type,
                         unsigned count) {
    auto uniform = std::make_unique<Uniform>(name, data, type, count);
    uniform->mLocation = glGetUniformLocation(mProgram->mProgram, name.c_str());
    if (uniform->mLocation == -1) {
        return -1;
    }
    mUniforms.push_back(std::move(uniform));
    return static_cast<int>(mUniforms.size()) - 1;
}

int Renderer::addTexture(const std::string& name, Texture* texture) {
    if (texture == nullptr) {
        return -1;
    }
    const GLint location = glGetUniformLocation(mProgram->mProgram, name.c_str());
    if (location == -1) {
        return -1;
    }
    texture->allocate();
    mTextures.emplace_back(texture, location);
    if (texture->mKind == Texture::kRenderTarget) {
        mSources.push_back(static_cast<RenderableTexture*>(texture));
    }
    addUniform(name + "Size", &texture->mSize[0], Uniform::kVec2, 1);
    addUniform(name + "TexelSize", &texture->mTexelSize[0], Uniform::kVec2, 1);
    return static_cast<int>(mTextures.size()) - 1;
}

void Renderer::draw() {
    if (mDrawable == nullptr) {
        qam::logErrorOnce(this, "Renderer: no drawable, draw skipped");
        return;
    }
    mVertexCount = countVertices();
    for (RenderableTexture* source : mSources) {
        if (!source->mIsStatic) {
            source->renderFrame();
        }
    }

    Drawable& drawable = *mDrawable;
    drawable.mNormalMatrix = qam::normalMatrixOf(drawable.mModelMatrix);
    drawable.mModelViewMatrix = qam::affineProduct(*Drawable::mViewMatrix, drawable.mModelMatrix);
    drawable.mModelViewProjectionMatrix =
        qam::sparseProjectionProduct(*Drawable::mProjectionMatrix, drawable.mModelViewMatrix);

    glUseProgram(mProgram->mProgram);
    for (const auto& attribute : mAttributes) {
        glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(attribute->mBuffer));
        if (!attribute->mIsStatic) {
            glBufferData(GL_ARRAY_BUFFER, attributeBytes(*attribute), attribute->mData,
                         GL_STREAM_DRAW);
        }
        glVertexAttribPointer(static_cast<GLuint>(attribute->mLocation),
                              static_cast<GLint>(attribute->mComponents), GL_FLOAT, GL_FALSE, 0,
                              nullptr);
    }
    for (const auto& uniform : mUniforms) {
        // GL would read the value through a null pointer; it may be set later.
        if (uniform->mData == nullptr && uniform->mCount != 0 && uniform->mType <= Uniform::kVec4) {
            qam::logErrorOnce(this, "Renderer: uniform without data, not uploaded");
            continue;
        }
        uniform->upload();
    }
    for (size_t unit = 0; unit < mTextures.size(); ++unit) {
        mTextures[unit].first->bind(static_cast<unsigned>(mTextures[unit].second),
                                    static_cast<unsigned>(unit));
    }

    if (mIndexBuffer == kNoBuffer) {
        glDrawArrays(drawable.mMode, 0, static_cast<GLsizei>(mVertexCount));
        return;
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLuint>(mIndexBuffer));
    if (drawable.mIsIndicesChanged) {
        glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                     static_cast<GLsizeiptr>(drawable.mIndices.size() * sizeof(uint16_t)),
                     drawable.mIndices.data(), GL_STATIC_DRAW);
        drawable.mIsIndicesChanged = 0;
    }
    glDrawElements(drawable.mMode, static_cast<GLsizei>(drawable.mIndices.size()),
                   GL_UNSIGNED_SHORT, nullptr);
}

void Renderer::setCullFace(bool enable, bool back) {
    if (enable) {
        glEnable(GL_CULL_FACE);
        glCullFace(back ? GL_BACK : GL_FRONT);
    } else {
        glDisable(GL_CULL_FACE);
    }
}

void Renderer::setDepthTest(bool enable, bool less, bool equal) {
    if (enable) {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(equal ? GL_EQUAL : less ? GL_LESS : GL_GREATER);
    } else {
        glDisable(GL_DEPTH_TEST);
    }
}

void Renderer::setBlending(bool enable) {
    if (enable) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    } else {
        glDisable(GL_BLEND);
    }
}

void Renderer::setDepthMask(bool enable) {
    glDepthMask(enable ? GL_TRUE : GL_FALSE);
}

void Renderer::setColorMask(bool red, bool green, bool blue, bool alpha) {
    glColorMask(red, green, blue, alpha);
}

void Renderer::clearDepth() {
    glClear(GL_DEPTH_BUFFER_BIT);
}

}  // namespace vi
