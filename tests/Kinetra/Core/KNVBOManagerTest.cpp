#include "Kinetra/Core/KNVBOManager.h"

#include <set>

#include "tests/Kinetra/Core/CoreTestSupport.h"

using Kinetra::KNVBOManager;
using KNVBOManagerTest = CoreTest;

TEST_F(KNVBOManagerTest, SevenNamesAreMadeOnceAndDeletedOnRelease) {
    GLCallCounter calls;
    KNVBOManager* vbo = KNVBOManager::getInstancePtr();
    const std::set<unsigned int> names = {
        vbo->getVertexBufferID(),  vbo->getNormalBufferID(), vbo->getHeightBufferID(),
        vbo->getTangentBufferID(), vbo->getUVBufferID(),     vbo->getColorBufferID(),
        vbo->getIndexBufferID(),   vbo->getVertexBufferID(), 0u};
    EXPECT_EQ(names.size(), 8u);
    EXPECT_EQ(calls.count("glGenBuffers"), 7);
    const unsigned int vertex = vbo->getVertexBufferID();
    glBindBuffer(GL_ARRAY_BUFFER, vertex);  // a name becomes a buffer when first bound
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    KNVBOManager::ReleaseInstance();
    EXPECT_FALSE(glIsBuffer(vertex));
    // Only names that were made are deleted; a fresh instance starts again.
    KNVBOManager::getInstancePtr()->getIndexBufferID();
    KNVBOManager::ReleaseInstance();
    KNVBOManager::ReleaseInstance();
    EXPECT_EQ(calls.count("glGenBuffers"), 8);
}
