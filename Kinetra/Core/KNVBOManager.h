#pragma once

#include "Common/Platform/Export.h"

namespace Kinetra {

// A process-wide store of buffer-object names, each generated on first request. Created on
// first use, destroyed (with its buffers) only by ReleaseInstance(). GL thread only.
class TALVEQAM_EXPORT KNVBOManager {
  public:
    static KNVBOManager* getInstancePtr();
    static void ReleaseInstance();

    KNVBOManager(const KNVBOManager&) = delete;
    KNVBOManager& operator=(const KNVBOManager&) = delete;

    unsigned int getVertexBufferID();
    unsigned int getNormalBufferID();
    unsigned int getHeightBufferID();
    unsigned int getTangentBufferID();
    unsigned int getUVBufferID();
    unsigned int getColorBufferID();
    unsigned int getIndexBufferID();

  private:
    enum Buffer { kVertex, kNormal, kHeight, kTangent, kUV, kColor, kIndex, kBufferCount };

    KNVBOManager() = default;
    ~KNVBOManager();

    unsigned int buffer(Buffer which);

    static KNVBOManager* m_pInstance;

    unsigned int mBuffers[kBufferCount] = {};
};

}  // namespace Kinetra
