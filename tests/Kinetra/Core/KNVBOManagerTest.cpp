#include "Kinetra/Core/KNVBOManager.h"

#include <GLES2/gl2.h>

#include <set>

#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"

namespace {

using Kinetra::KNVBOManager;

class KNVBOManagerTest : public qam::test::GLTest {};

TEST_F(KNVBOManagerTest, NamesAreMadeOnceAndDeletedOnRelease) {
    qam::test::GLCallCounter calls;
    KNVBOManager* vbo = KNVBOManager::getInstancePtr();
    EXPECT_EQ(KNVBOManager::getInstancePtr(), vbo);
    const std::set<unsigned int> names = {vbo->getVertexBufferID(), vbo->getNormalBufferID(),
                                          vbo->getHeightBufferID(), vbo->getTangentBufferID(),
                                          vbo->getUVBufferID(),     vbo->getColorBufferID(),
                                          vbo->getIndexBufferID()};
    EXPECT_EQ(names.size(), 7u);
    EXPECT_EQ(names.count(0u), 0u);
    const unsigned int vertex = vbo->getVertexBufferID();
    EXPECT_EQ(calls.count("glGenBuffers"), 7);

    glBindBuffer(GL_ARRAY_BUFFER, vertex);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    ASSERT_TRUE(glIsBuffer(vertex));
    KNVBOManager::ReleaseInstance();
    EXPECT_FALSE(glIsBuffer(vertex));

    // Only names that were made are deleted; a fresh instance starts again.
    KNVBOManager::getInstancePtr()->getIndexBufferID();
    KNVBOManager::ReleaseInstance();
    KNVBOManager::ReleaseInstance();
    EXPECT_EQ(calls.count("glGenBuffers"), 8);
}

}  // namespace
