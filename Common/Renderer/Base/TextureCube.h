#pragma once

#include <array>

#include "Common/Renderer/Base/Texture.h"

namespace vi {

// A cube map: six RGBA (or ETC1) faces in the order +X, -X, +Y, -Y, +Z, -Z.
class TALVEQAM_EXPORT TextureCube : public Texture {
  public:
    static constexpr int kFaces = 6;

    TextureCube(const std::array<void*, kFaces>& faces, const std::array<unsigned, kFaces>& widths,
                const std::array<unsigned, kFaces>& heights, bool isStatic, bool repeat,
                bool mirrored, bool linear, bool compressed);
    ~TextureCube() override;

    void update() override;

    std::vector<void*> mFaceBuffers;
    std::vector<unsigned> mFaceWidths;
    std::vector<unsigned> mFaceHeights;
};

}  // namespace vi
