#include "Kinetra/Core/KNISceneComponent.h"

#include <GLES2/gl2.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNISceneComponent;
using qam::test::GLTest;
using qam::test::LogCapture;

// A scene that writes "<name>.<hook>(<arguments>)" into a journal shared by a whole tree.
class RecordingScene : public KNISceneComponent {
  public:
    RecordingScene(std::string name, std::vector<std::string>& journal)
        : mName(std::move(name)), mJournal(journal) {}

    int emptyAnswer = 0;
    std::function<void()> onDraw;  // runs inside drawScene, after the record
    int* lastXs = nullptr;

    using KNISceneComponent::addMaskLayer;
    int width() const { return mWidth; }
    int height() const { return mHeight; }

  protected:
    void initScene(int w, int h) override { note("init", w, h); }
    void changeSurface(int w, int h) override { note("surface", w, h); }
    void updateScene() override { note("update"); }
    void drawScene() override {
        note("draw");
        if (onDraw) {
            onDraw();
        }
    }
    void keyEvent(int key) override { note("key", key); }
    void customEvent(int id, float value) override {
        note("custom", id, static_cast<int>(value * 10));
    }
    void touchDown(int c, int x, int y) override { note("down", c, x, y); }
    void hoverEvent(int a, int b, int c) override { note("hover", a, b, c); }
    void touchEvent(int c, int a, int b, int* xs, int*) override {
        lastXs = xs;
        note("touch", c, a, b);
    }
    void sensorEvent(int type, float x, float y, float z) override {
        note("sensor", type, static_cast<int>(x), static_cast<int>(y), static_cast<int>(z));
    }
    void setTexture(const char* name) override { mJournal.push_back(mName + ".tex(" + name + ")"); }
    void setTextureColor(const char* name) override {
        mJournal.push_back(mName + ".color(" + name + ")");
    }
    void resetScene() override { note("reset"); }
    int isEmptyScene() override {
        note("empty");
        return emptyAnswer;
    }

  private:
    template <typename... Values>
    void note(const char* hook, Values... values) {
        std::string entry = mName + "." + hook + "(";
        const char* separator = "";
        for (int value : std::initializer_list<int>{values...}) {
            entry += separator + std::to_string(value);
            separator = ",";
        }
        mJournal.push_back(entry + ")");
    }

    std::string mName;
    std::vector<std::string>& mJournal;
};

using Journal = std::vector<std::string>;

class KNISceneComponentTest : public GLTest {
  protected:
    Journal journal;
    RecordingScene root{"root", journal};
    RecordingScene shown{"shown", journal};
    RecordingScene hidden{"hidden", journal};  // visibility 2: stored, but not visible
    RecordingScene off{"off", journal};        // visibility 0
    RecordingScene frozen{"frozen", journal};

    void buildTree() {
        hidden.setVisibility(2);
        off.setVisibility(0);
        frozen.setFrozen(true);
        for (RecordingScene* child : {&shown, &hidden, &off, &frozen}) {
            root.addSceneLayer(child);
        }
    }
    Journal take() {
        Journal taken;
        taken.swap(journal);
        return taken;
    }
};

TEST_F(KNISceneComponentTest, FreshSceneIsVisibleNotEmptyAndDrawsOnlyItself) {
    KNISceneComponent plain;
    EXPECT_EQ(plain.getVisibility(), 1);
    EXPECT_FALSE(plain.isFrozen());
    EXPECT_EQ(plain.isEmpty(), 0);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()"}));
}

TEST_F(KNISceneComponentTest, InitAndResizeReachEveryChildAndClearToOpaqueBlack) {
    buildTree();
    root.addMaskLayer(3, &journal);
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    root.onInitScene(32, 16);
    EXPECT_EQ(take(), (Journal{"root.init(32,16)", "shown.init(32,16)", "hidden.init(32,16)",
                               "off.init(32,16)", "frozen.init(32,16)"}));
    EXPECT_EQ(off.width(), 32);
    EXPECT_EQ(off.height(), 16);
    EXPECT_PIXEL_NEAR(pixel(50, 50), 0x000000FFu, 0);  // the clear ignores the viewport
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], 32);
    EXPECT_EQ(viewport[3], 16);

    root.onSurfaceChanged(64, 48);
    EXPECT_EQ(take(),
              (Journal{"root.surface(64,48)", "shown.surface(64,48)", "hidden.surface(64,48)",
                       "off.surface(64,48)", "frozen.surface(64,48)"}));
    EXPECT_EQ(frozen.width(), 64);

    root.onSetTextureEvent("bg");
    EXPECT_EQ(take(), (Journal{"root.tex(bg)", "shown.tex(bg)", "hidden.tex(bg)", "off.tex(bg)",
                               "frozen.tex(bg)"}));
}

TEST_F(KNISceneComponentTest, ChildrenClearAfterTheirParentSoTheDeepestClearWins) {
    // The parent paints green in its hook; its child's preparation clears that away.
    struct Painter : RecordingScene {
        using RecordingScene::RecordingScene;
        void initScene(int, int) override {
            glClearColor(0, 1, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
        }
    };
    Painter painter{"painter", journal};
    painter.onInitScene(64, 64);
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0x00FF00FFu, 0);
    painter.addSceneLayer(&shown);
    painter.onInitScene(64, 64);
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0x000000FFu, 0);

    glClearColor(0, 0, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    painter.clearGLBuffer();
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0x000000FFu, 0);
}

TEST_F(KNISceneComponentTest, VisibilityAndFrozenFlagsFilterEachEntryPoint) {
    buildTree();
    root.addMaskLayer(1, &journal);  // skipped by every walk

    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()", "frozen.draw()"}));
    root.onResetScene();
    EXPECT_EQ(take(), (Journal{"root.reset()", "shown.reset()", "frozen.reset()"}));
    root.onKeyEvent(4);
    EXPECT_EQ(take(), (Journal{"root.key(4)", "shown.key(4)", "frozen.key(4)"}));
    root.onCustomEvent(9, 0.5f);
    EXPECT_EQ(take(), (Journal{"root.custom(9,5)", "shown.custom(9,5)", "frozen.custom(9,5)"}));
    root.onHoverEvent(1, 2, 3);
    EXPECT_EQ(take(), (Journal{"root.hover(1,2,3)", "shown.hover(1,2,3)", "frozen.hover(1,2,3)"}));
    root.onSensorEvent(1, 2.0f, 3.0f, 4.0f);
    EXPECT_EQ(take(),
              (Journal{"root.sensor(1,2,3,4)", "shown.sensor(1,2,3,4)", "frozen.sensor(1,2,3,4)"}));
    root.onSetTextureColorEvent("tint");
    EXPECT_EQ(take(), (Journal{"root.color(tint)", "shown.color(tint)", "frozen.color(tint)"}));

    // Frozen children are drawn but neither updated nor touched.
    root.onUpdateScene();
    EXPECT_EQ(take(), (Journal{"root.update()", "shown.update()"}));
    int xs[] = {5};
    int ys[] = {6};
    root.onTouchEvent(1, 2, 3, xs, ys);
    EXPECT_EQ(take(), (Journal{"root.touch(3,1,2)", "shown.touch(3,1,2)"}));

    // The filters look at children only: an invisible or frozen scene still runs its own hooks.
    hidden.onDrawScene();
    frozen.onUpdateScene();
    EXPECT_EQ(take(), (Journal{"hidden.draw()", "frozen.update()"}));
}

TEST_F(KNISceneComponentTest, TouchDownGoesFirstAndArgumentsAreReordered) {
    root.addSceneLayer(&shown);
    int xs[] = {11, 12};
    int ys[] = {21, 22};
    root.onTouchEvent(0, 7, 2, xs, ys);
    EXPECT_EQ(take(), (Journal{"root.down(2,11,21)", "root.touch(2,0,7)", "shown.down(2,11,21)",
                               "shown.touch(2,0,7)"}));
    EXPECT_EQ(shown.lastXs, xs);  // passed on, not copied
}

TEST_F(KNISceneComponentTest, RemovingTakesTheFirstMatchingEntryOfAnyKind) {
    root.addSceneLayer(&shown);
    root.addSceneLayer(&off);
    root.addSceneLayer(&shown);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()", "off.draw()", "shown.draw()"}));

    root.removeMaskLayer(&shown);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "off.draw()", "shown.draw()"}));

    root.removeMaskLayer(&hidden);  // absent: nothing changes
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "off.draw()", "shown.draw()"}));

    // A mask entry ahead of a scene layer with the same address goes first.
    root.removeMaskLayer(&off);
    root.removeMaskLayer(&shown);
    root.addMaskLayer(2, &shown);
    root.addSceneLayer(&shown);
    root.removeMaskLayer(&shown);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()"}));
}

TEST_F(KNISceneComponentTest, IsEmptyStopsAtTheFirstNonZeroAnswerOfAVisibleScene) {
    buildTree();
    hidden.emptyAnswer = 5;  // not visible: never asked
    frozen.emptyAnswer = 3;  // frozen children are asked
    EXPECT_EQ(root.isEmpty(), 3);
    EXPECT_EQ(take(), (Journal{"root.empty()", "shown.empty()", "frozen.empty()"}));

    shown.emptyAnswer = 1;
    EXPECT_EQ(root.isEmpty(), 1);
    EXPECT_EQ(take(), (Journal{"root.empty()", "shown.empty()"}));

    RecordingScene grandchild{"grandchild", journal};
    grandchild.emptyAnswer = 8;
    shown.emptyAnswer = 0;
    shown.addSceneLayer(&grandchild);
    EXPECT_EQ(root.isEmpty(), 8);
    EXPECT_EQ(take(), (Journal{"root.empty()", "shown.empty()", "grandchild.empty()"}));
}

TEST_F(KNISceneComponentTest, ChildrenMayChangeTheirParentsListDuringADispatch) {
    RecordingScene late{"late", journal};
    std::vector<std::unique_ptr<RecordingScene>> crowd;

    // Adds a layer and then enough more to move the list's storage: the added ones are visited.
    shown.onDraw = [&] {
        root.addSceneLayer(&late);
        for (int i = 0; i < 64; ++i) {
            crowd.push_back(std::make_unique<RecordingScene>("crowd", journal));
            crowd.back()->setVisibility(0);
            root.addSceneLayer(crowd.back().get());
        }
    };
    root.addSceneLayer(&shown);
    off.setVisibility(0);
    root.addSceneLayer(&off);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()", "late.draw()"}));

    // A child that removes itself shifts the rest down: the next entry is skipped this time.
    RecordingScene first{"first", journal};
    RecordingScene second{"second", journal};
    KNISceneComponent fresh;
    fresh.addSceneLayer(&shown);
    fresh.addSceneLayer(&first);
    fresh.addSceneLayer(&second);
    shown.onDraw = [&] { fresh.removeMaskLayer(&shown); };
    fresh.onDrawScene();
    EXPECT_EQ(take(), (Journal{"shown.draw()", "second.draw()"}));
    fresh.onDrawScene();
    EXPECT_EQ(take(), (Journal{"first.draw()", "second.draw()"}));

    // A child that empties its parent's list ends the walk.
    first.onDraw = [&] {
        fresh.removeMaskLayer(&first);
        fresh.removeMaskLayer(&second);
    };
    fresh.onDrawScene();
    EXPECT_EQ(take(), (Journal{"first.draw()"}));
    fresh.onDrawScene();
    EXPECT_TRUE(take().empty());
}

TEST_F(KNISceneComponentTest, DestroyingAParentLeavesItsChildrenAlive) {
    auto parent = std::make_unique<RecordingScene>("parent", journal);
    parent->addSceneLayer(&shown);
    parent.reset();
    shown.onDrawScene();  // still a whole object (ASan would catch a use after free)
    EXPECT_EQ(take(), (Journal{"shown.draw()"}));
}

TEST_F(KNISceneComponentTest, BadInputIsDroppedWithOneLogLine) {
    root.addSceneLayer(&shown);
    LogCapture log;
    root.addSceneLayer(nullptr);
    root.removeMaskLayer(nullptr);
    root.addMaskLayer(0, &journal);
    root.onSetTextureEvent(nullptr);
    root.onSetTextureColorEvent(nullptr);
    root.onTouchEvent(0, 1, 2, nullptr, nullptr);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{
                  "KNISceneComponent::addSceneLayer: null layer dropped",
                  "KNISceneComponent::removeMaskLayer: null layer",
                  "KNISceneComponent::addMaskLayer: kind 0 is for scene layers, dropped",
                  "KNISceneComponent::onSetTextureEvent: null name, event dropped",
                  "KNISceneComponent::onSetTextureColorEvent: null name, event dropped",
                  "KNISceneComponent::onTouchEvent: touch down without positions, dropped"}));
    EXPECT_TRUE(take().empty());

    // Null arrays are fine when nothing reads them, and the tree is intact.
    root.onTouchEvent(1, 1, 2, nullptr, nullptr);
    root.onDrawScene();
    EXPECT_EQ(take(),
              (Journal{"root.touch(2,1,1)", "shown.touch(2,1,1)", "root.draw()", "shown.draw()"}));
    EXPECT_EQ(log.messages().size(), 6u);
}

}  // namespace
