#pragma once

#include <GLES2/gl2.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Common/Platform/Export.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/Uniform.h"

namespace vi {

class RenderableTexture;
class ShaderProgram;
class Texture;

// Binds one drawable to one shader program with the attributes, uniforms and textures the
// draw needs. Renderers list themselves in the current effect's list (mAllRenderers), which
// the host walks to rebuild programs, buffers and locations after a lost EGL context.
class TALVEQAM_EXPORT Renderer {
  public:
    // One vertex attribute, fed from client memory through its own buffer.
    struct Attribute {
        std::string mName;
        // GL buffer name; -1 = none.
        int mBuffer;
        // -1 = not found in the program.
        GLint mLocation;
        // Not owned; read at every draw unless static.
        const void* mData;
        // The renderer's vertex count.
        const unsigned* mVertexCount;
        // Floats per vertex.
        unsigned mComponents;
        // Uploaded once when added, never at draw time.
        bool mIsStatic;
    };

    // Uploads the drawable's indices when it has any and adds the six built-in uniforms
    // ("uModelMatrix", "uViewMatrix", "uNormalMatrix", "uProjectionMatrix",
    // "uModelViewProjectionMatrix", "uOpacity") that the program declares.
    Renderer(ShaderProgram& program, Drawable& drawable);
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;
    // Leaves the program, the drawable and the textures alone.
    virtual ~Renderer();

    virtual void setDrawable(Drawable* drawable);

    // Each returns the index of what it added, or -1 when the program does not use `name`.
    int addAttribute(const std::string& name, const void* data, unsigned components, bool isStatic);
    int addUniform(const std::string& name, const void* data, Uniform::UniformType type,
                   unsigned count);
    // The returned index is the texture unit. Render targets are also rendered before each
    // draw unless static. Publishes name + "Size" and name + "TexelSize" as vec2 uniforms.
    int addTexture(const std::string& name, Texture* texture);

    // The whole draw into whatever framebuffer is bound: sources first, derived matrices,
    // program, attributes, uniforms, textures, then the draw call.
    void draw();

    static void setCullFace(bool enable, bool back);
    static void setDepthTest(bool enable, bool less, bool equal);
    static void setBlending(bool enable);
    static void setDepthMask(bool enable);
    static void setColorMask(bool red, bool green, bool blue, bool alpha);
    static void clearDepth();

    // Not owned.
    ShaderProgram* mProgram;
    // GL buffer of the drawable's indices; -1 = none.
    int mIndexBuffer;
    unsigned mVertexCount;
    std::vector<std::unique_ptr<Attribute>> mAttributes;
    std::vector<std::unique_ptr<Uniform>> mUniforms;
    // A texture's position in this list is its texture unit.
    std::vector<std::pair<Texture*, GLint>> mTextures;
    // Render targets to draw before this renderer.
    std::vector<RenderableTexture*> mSources;
    // Not owned.
    Drawable* mDrawable;

    static std::vector<Renderer*>* mAllRenderers;

  private:
    unsigned countVertices() const;
};

}  // namespace vi
