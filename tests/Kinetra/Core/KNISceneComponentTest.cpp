#include "Kinetra/Core/KNISceneComponent.h"

#include <memory>

#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using Kinetra::KNISceneComponent;
using Journal = std::vector<std::string>;

// A scene that writes "<name>.<hook>(<arguments>)" into a journal shared by a whole tree.
class RecordingScene : public KNISceneComponent {
  public:
    RecordingScene(std::string name, Journal& journal)
        : mName(std::move(name)), mJournal(journal) {}
    int emptyAnswer = 0;
    std::function<void(const std::string&)> onHook;  // runs after each record, with the hook
    using KNISceneComponent::addMaskLayer;

  protected:
    void initScene(int w, int h) override { note("init", {w, h}); }
    void changeSurface(int w, int h) override { note("surface", {w, h}); }
    void updateScene() override { note("update"); }
    void drawScene() override { note("draw"); }
    void keyEvent(int key) override { note("key", {key}); }
    void customEvent(int id, float v) override { note("custom", {id, static_cast<int>(v * 10)}); }
    void touchDown(int c, int x, int y) override { note("down", {c, x, y}); }
    void hoverEvent(int a, int b, int c) override { note("hover", {a, b, c}); }
    void touchEvent(int c, int a, int b, int*, int*) override { note("touch", {c, a, b}); }
    void sensorEvent(int type, float x, float y, float z) override {
        note("sensor", {type, static_cast<int>(x), static_cast<int>(y), static_cast<int>(z)});
    }
    void setTexture(const char* name) override { note(std::string("tex:") + text(name)); }
    void setTextureColor(const char* name) override { note(std::string("color:") + text(name)); }
    void resetScene() override { note("reset"); }
    int isEmptyScene() override {
        note("empty");
        return emptyAnswer;
    }

  private:
    static const char* text(const char* name) { return name != nullptr ? name : "null"; }
    void note(const std::string& hook, std::initializer_list<int> values = {}) {
        std::string entry = mName + "." + hook + "(";
        for (int value : values) {
            entry += (entry.back() == '(' ? "" : ",") + std::to_string(value);
        }
        mJournal.push_back(entry + ")");
        if (onHook) {
            onHook(hook);
        }
    }
    std::string mName;
    Journal& mJournal;
};

class KNISceneComponentTest : public CoreTest {
  protected:
    Journal journal;
    // hidden has visibility 2 (stored, but not visible), off has 0.
    RecordingScene root{"root", journal}, shown{"shown", journal}, frozen{"frozen", journal},
        hidden{"hidden", journal}, off{"off", journal};

    void buildTree() {
        hidden.setVisibility(2);
        off.setVisibility(0);
        frozen.setFrozen(true);
        for (RecordingScene* child : {&shown, &hidden, &off, &frozen}) {
            root.addSceneLayer(child);
        }
        root.addMaskLayer(3, &journal);  // skipped by every walk
    }
    Journal take() { return std::exchange(journal, {}); }
    // `hook` as recorded by each of `scenes`, in order.
    static Journal each(const std::string& hook, std::initializer_list<const char*> scenes) {
        Journal expected;
        for (const char* scene : scenes) {
            expected.push_back(scene + ("." + hook));
        }
        return expected;
    }
};

TEST_F(KNISceneComponentTest, InitResizeAndTexturesReachEveryChildAfterAnOpaqueBlackClear) {
    buildTree();
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    root.onInitScene(32, 16);
    const auto all = {"root", "shown", "hidden", "off", "frozen"};
    EXPECT_EQ(take(), each("init(32,16)", all));
    EXPECT_PIXEL_NEAR(pixel(50, 50), 0x000000FFu, 0);  // the clear ignores the viewport
    EXPECT_EQ(viewport(), (std::vector<GLint>{0, 0, 32, 16}));
    root.onSurfaceChanged(64, 48);
    EXPECT_EQ(take(), each("surface(64,48)", all));
    root.onSetTextureEvent("bg");
    EXPECT_EQ(take(), each("tex:bg()", all));

    // Each scene clears before its own hook, so a child's clear hides what its parent drew.
    shown.onHook = [](const std::string&) { paint(kGreen); };
    shown.onInitScene(64, 64);
    EXPECT_PIXEL_NEAR(pixel(10, 10), kGreen, 0);
    shown.addSceneLayer(&off);
    shown.onInitScene(64, 64);
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0x000000FFu, 0);
    glClearColor(0, 0, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    root.clearGLBuffer();
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0x000000FFu, 0);
}

TEST_F(KNISceneComponentTest, VisibilityAndFrozenFlagsFilterEachEntryPoint) {
    buildTree();
    int xs[] = {5}, ys[] = {6};
    const std::vector<std::pair<std::function<void()>, std::string>> visible = {
        {[&] { root.onDrawScene(); }, "draw()"},
        {[&] { root.onResetScene(); }, "reset()"},
        {[&] { root.onKeyEvent(4); }, "key(4)"},
        {[&] { root.onCustomEvent(9, 0.5f); }, "custom(9,5)"},
        {[&] { root.onHoverEvent(1, 2, 3); }, "hover(1,2,3)"},
        {[&] { root.onSensorEvent(1, 2.0f, 3.0f, 4.0f); }, "sensor(1,2,3,4)"},
        {[&] { root.onSetTextureColorEvent("tint"); }, "color:tint()"}};
    for (const auto& [call, hook] : visible) {
        call();
        EXPECT_EQ(take(), each(hook, {"root", "shown", "frozen"}));
    }
    // Frozen children are drawn but neither updated nor touched.
    root.onUpdateScene();
    EXPECT_EQ(take(), each("update()", {"root", "shown"}));
    root.onTouchEvent(1, 2, 3, xs, ys);
    EXPECT_EQ(take(), each("touch(3,1,2)", {"root", "shown"}));
    // The filters look at children only: an invisible or frozen scene still runs its own hooks.
    hidden.onDrawScene();
    frozen.onUpdateScene();
    EXPECT_EQ(take(), (Journal{"hidden.draw()", "frozen.update()"}));

    // isEmpty asks the visible scenes, frozen ones too, until one answers non-zero.
    RecordingScene grandchild{"grandchild", journal};
    shown.addSceneLayer(&grandchild);
    hidden.emptyAnswer = 5;
    frozen.emptyAnswer = 3;
    EXPECT_EQ(root.isEmpty(), 3);
    EXPECT_EQ(take(), each("empty()", {"root", "shown", "grandchild", "frozen"}));
    grandchild.emptyAnswer = 8;
    EXPECT_EQ(root.isEmpty(), 8);
    EXPECT_EQ(take(), each("empty()", {"root", "shown", "grandchild"}));
}

TEST_F(KNISceneComponentTest, RemovingTakesTheFirstMatchingEntryOfAnyKind) {
    for (RecordingScene* child : {&shown, &off, &shown}) {
        root.addSceneLayer(child);
    }
    root.removeMaskLayer(&shown);
    root.removeMaskLayer(&hidden);  // absent: nothing changes
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "off.draw()", "shown.draw()"}));
    root.removeMaskLayer(&off);
    root.removeMaskLayer(&shown);
    root.addMaskLayer(2, &shown);  // ahead of a scene layer with the same address: goes first
    root.addSceneLayer(&shown);
    root.removeMaskLayer(&shown);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()"}));
}

TEST_F(KNISceneComponentTest, ChildrenMayChangeTheirParentsListDuringADispatch) {
    RecordingScene late{"late", journal};
    std::vector<std::unique_ptr<RecordingScene>> crowd;
    // Adds a layer and then enough more to move the list's storage: the added ones are visited.
    shown.onHook = [&](const std::string&) {
        root.addSceneLayer(&late);
        for (int i = 0; i < 64; ++i) {
            crowd.push_back(std::make_unique<RecordingScene>("crowd", journal));
            crowd.back()->setVisibility(0);
            root.addSceneLayer(crowd.back().get());
        }
    };
    root.addSceneLayer(&shown);
    root.onDrawScene();
    EXPECT_EQ(take(), (Journal{"root.draw()", "shown.draw()", "late.draw()"}));

    // A child that removes itself shifts the rest down: the next entry is skipped this time.
    auto parent = std::make_unique<KNISceneComponent>();
    for (RecordingScene* child : {&shown, &late, &frozen}) {
        parent->addSceneLayer(child);
    }
    shown.onHook = [&](const std::string&) { parent->removeMaskLayer(&shown); };
    parent->onDrawScene();
    EXPECT_EQ(take(), (Journal{"shown.draw()", "frozen.draw()"}));
    parent.reset();  // its children stay whole (ASan would catch a use after free)
    late.onDrawScene();
    EXPECT_EQ(take(), (Journal{"late.draw()"}));
}

TEST_F(KNISceneComponentTest, TouchDownGoesFirstArgumentsAreReorderedAndNullsArePassedOn) {
    root.addSceneLayer(&shown);
    int xs[] = {11, 12}, ys[] = {21, 22};
    root.onTouchEvent(0, 7, 2, xs, ys);
    EXPECT_EQ(take(), (Journal{"root.down(2,11,21)", "root.touch(2,0,7)", "shown.down(2,11,21)",
                               "shown.touch(2,0,7)"}));
    LogCapture log;
    root.addSceneLayer(nullptr);  // a null layer left in the list is passed over, logged once
    root.addMaskLayer(0, &journal);
    root.onSetTextureEvent(nullptr);               // null names reach every hook as given
    root.onTouchEvent(0, 1, 2, nullptr, nullptr);  // no position to read: only touchDown skipped
    root.onTouchEvent(0, 1, 2, nullptr, nullptr);
    EXPECT_EQ(log.messages().size(), 4u);  // the null layer, kind 0 as a mask, two touch downs
    EXPECT_EQ(take(), (Journal{"root.tex:null()", "shown.tex:null()", "root.touch(2,0,1)",
                               "shown.touch(2,0,1)", "root.touch(2,0,1)", "shown.touch(2,0,1)"}));
}

}  // namespace
