#include "Kinetra/Core/KNVBOManager.h"

#include <GLES2/gl2.h>

namespace Kinetra {

KNVBOManager* KNVBOManager::m_pInstance = nullptr;

KNVBOManager* KNVBOManager::getInstancePtr() {
    if (m_pInstance == nullptr) {
        m_pInstance = new KNVBOManager();
    }
    return m_pInstance;
}

void KNVBOManager::ReleaseInstance() {
    delete m_pInstance;
    m_pInstance = nullptr;
}

KNVBOManager::~KNVBOManager() {
    for (unsigned int& name : mBuffers) {
        if (name != 0) {
            glDeleteBuffers(1, &name);
        }
    }
}

unsigned int KNVBOManager::buffer(Buffer which) {
    if (mBuffers[which] == 0) {
        glGenBuffers(1, &mBuffers[which]);
    }
    return mBuffers[which];
}

unsigned int KNVBOManager::getVertexBufferID() {
    return buffer(kVertex);
}
unsigned int KNVBOManager::getNormalBufferID() {
    return buffer(kNormal);
}
unsigned int KNVBOManager::getHeightBufferID() {
    return buffer(kHeight);
}
unsigned int KNVBOManager::getTangentBufferID() {
    return buffer(kTangent);
}
unsigned int KNVBOManager::getUVBufferID() {
    return buffer(kUV);
}
unsigned int KNVBOManager::getColorBufferID() {
    return buffer(kColor);
}
unsigned int KNVBOManager::getIndexBufferID() {
    return buffer(kIndex);
}

}  // namespace Kinetra
