// Arbitrary bytes as a model: whatever its header claims, nothing is read or written past
// the buffer, and a filled drawable always matches a model that fits in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/ModelObject.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 0xFFFFFFFFu) {
        return 0;
    }
    // The first byte, when there is one, splits the rest into two appended blocks.
    size_t split = 0;
    if (size > 0) {
        split = data[0] % size;
        ++data;
        --size;
        split = split > size ? size : split;
    }
    // Kept apart so ASan sees the exact ends of both blocks.
    uint8_t* first = static_cast<uint8_t*>(malloc(split + 1));
    uint8_t* second = static_cast<uint8_t*>(malloc(size - split + 1));
    memcpy(first, data, split);
    memcpy(second, data + split, size - split);

    vi::ModelObject model;
    model.setBuffer(first, static_cast<unsigned>(split));
    model.setBuffer(second, static_cast<unsigned>(size - split));
    free(first);
    free(second);
    model.scale(-1.5f);

    // A refused model leaves the drawable as it was.
    vi::Drawable drawable;
    drawable.mMode = GL_POINTS;
    drawable.mIndices.assign(3, 7);
    model.fillDrawable(drawable);
    const uint64_t vertices = drawable.mPositions3.size();
    const uint64_t indices = drawable.mIndices.size();
    if (drawable.mNormals.size() != vertices || drawable.mTextureCoords.size() != vertices) {
        abort();
    }
    if (drawable.mMode == GL_TRIANGLES) {
        // Without indices the skipped block is never read.
        const uint64_t read = indices == 0 ? 8 + 32 * vertices : 8 + 36 * vertices + 2 * indices;
        if (read > model.getLength()) {
            abort();
        }
    } else if (vertices != 0 || indices != 3) {
        abort();
    }
    return 0;
}
