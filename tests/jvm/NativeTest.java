import com.korvane.android.visualeffect.lock.common.Native;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * Drives libtalveQamCommon.so through its Java class in a real JVM, hosting the recording test
 * effect on a headless GL context of this thread.
 */
public final class NativeTest {
    private static final int WIDTH = 64;
    private static final int HEIGHT = 64;
    private static final String EFFECT = System.getProperty("qam.effect");
    private static final String NOT_AN_EFFECT = System.getProperty("qam.notAnEffect");

    private interface Case {
        void run() throws Exception;
    }

    private static int passed;
    private static int failed;

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("qam.support"));
        TestSupport.makeCurrent(WIDTH, HEIGHT);
        run("events queued before loadEffect reach the first frame", NativeTest::pendingEvents);
        run("parameters are replayed by every init until destroy", NativeTest::parameters);
        run("bg pixels become opaque RGBA and the array is left swapped", NativeTest::background);
        run("textures are shared by two effects on one context", NativeTest::sharedTextures);
        run("failed loads return null and keep the old effect", NativeTest::failedLoads);
        run("a lost context is rebuilt by draw", NativeTest::lostContext);
        run("drawing before init is skipped with a warning", NativeTest::skippedDraw);
        run("touches from another thread arrive once and in order", NativeTest::threadedTouches);
        run("bad arguments are dropped with a log line", NativeTest::badArguments);
        System.out.println(passed + " passed, " + failed + " failed");
        System.exit(failed == 0 ? 0 : 1);
    }

    private static void run(String name, Case test) {
        TestSupport.takeCalls();
        try {
            test.run();
            passed++;
            System.out.println("ok     " + name);
        } catch (Throwable error) {
            failed++;
            System.out.println("FAILED " + name + ": " + error);
            error.printStackTrace(System.out);
        }
    }

    private static void check(boolean condition, String what) {
        if (!condition) {
            throw new AssertionError(what);
        }
    }

    private static void checkEquals(Object expected, Object actual) {
        if (!expected.equals(actual)) {
            throw new AssertionError("expected " + expected + " but was " + actual);
        }
    }

    private static List<String> calls() {
        return Arrays.asList(TestSupport.takeCalls());
    }

    private static Native started() {
        Native effect = new Native();
        check(effect.loadEffect(EFFECT) != null, "loadEffect");
        effect.init(WIDTH, HEIGHT, false);
        return effect;
    }

    private static void pendingEvents() {
        Native effect = new Native();
        effect.showUnlock();
        effect.clear();
        String[] names = effect.loadEffect(EFFECT);
        checkEquals(Arrays.asList("bg", "noise", "mask"), Arrays.asList(names));
        effect.draw();  // not initialised: events stay queued
        effect.init(WIDTH, HEIGHT, false);
        effect.draw();
        checkEquals(Arrays.asList("create", "initLandscape", "onShowUnlock", "onTouchUp 0 0",
                        "onSecondTouchUp 0 0", "onThirdTouchUp 0 0", "onClear", "draw"),
                calls());
        effect.destroy();
    }

    private static void parameters() {
        Native effect = new Native();
        effect.setParameters(new int[] {3, 1}, new float[] {0.5f, 0.25f});
        check(effect.loadEffect(EFFECT) != null, "loadEffect");
        effect.init(WIDTH, HEIGHT, false);
        effect.draw();
        calls();
        effect.init(WIDTH, HEIGHT, false);
        effect.draw();
        checkEquals(Arrays.asList("initLandscape", "setParameter 1 0.25", "setParameter 3 0.5",
                        "draw"),
                calls());
        effect.destroy();
        effect = started();
        effect.draw();
        checkEquals(Arrays.asList("destroy", "create", "initLandscape", "draw"), calls());
        effect.destroy();
    }

    private static void background() {
        Native effect = started();
        int[] pixels = {0x00112233};
        effect.loadTexture("bg", pixels, 1, 1);
        checkEquals(0xFF332211, pixels[0]);
        effect.drawBgOnly(WIDTH, HEIGHT);
        checkEquals(0x112233FF, TestSupport.readPixel(10, 10));
        effect.loadTexture("bg", null, 0, 0);
        effect.destroy();
    }

    private static void sharedTextures() {
        Native first = started();
        Native second = started();
        first.loadTexture("bg", new int[] {0xFF405060}, 1, 1);
        second.drawBgOnly(WIDTH, HEIGHT);
        checkEquals(0x405060FF, TestSupport.readPixel(32, 32));
        first.destroy();
        second.drawBgOnly(WIDTH, HEIGHT);  // textures outlive the effect that loaded them
        checkEquals(0x405060FF, TestSupport.readPixel(32, 32));
        second.loadTexture("bg", null, 0, 0);
        second.destroy();
    }

    private static void failedLoads() {
        Native effect = started();
        calls();
        TestSupport.startLog();
        check(effect.loadEffect("/nonexistent/libeffect.so") == null, "dlopen failure");
        check(effect.loadEffect(NOT_AN_EFFECT) == null, "dlsym failure");
        List<String> log = Arrays.asList(TestSupport.stopLog());
        checkEquals(Arrays.asList("dlopen error: /nonexistent/libeffect.so: cannot open shared "
                                + "object file: No such file or directory",
                        "dlsym error: " + NOT_AN_EFFECT + ": undefined symbol: createScene"),
                log);
        effect.draw();
        checkEquals(Arrays.asList("draw"), calls());
        effect.destroy();
    }

    private static void lostContext() {
        Native effect = started();
        effect.setParameters(new int[] {1, 2}, new float[] {1f, 1f});
        effect.draw();
        checkEquals(0x00FFFFFF, TestSupport.readPixel(3, 3));
        TestSupport.loseContext();
        TestSupport.clearScreen();
        effect.draw();
        checkEquals(0x00FFFFFF, TestSupport.readPixel(3, 3));
        effect.destroy();
    }

    private static void skippedDraw() {
        Native effect = new Native();
        TestSupport.startLog();
        check(!effect.draw(), "draw without an effect");
        effect.loadEffect(EFFECT);
        check(!effect.draw(), "draw before init");
        checkEquals(Arrays.asList("WARNING: DRAWING SKIPPED!!!!!!!!!!!!",
                        "WARNING: DRAWING SKIPPED!!!!!!!!!!!!"),
                Arrays.asList(TestSupport.stopLog()));
        effect.destroy();
    }

    private static void threadedTouches() throws Exception {
        final Native effect = started();
        final int touches = 3000;
        Thread input = new Thread(() -> {
            for (int i = 0; i < touches; i++) {
                effect.onTouch(i, HEIGHT, 2);
                if (i % 500 == 0) {
                    effect.pauseAnimation();
                    effect.resumeAnimation();
                }
            }
        });
        calls();
        input.start();
        int frames = 0;
        while (input.isAlive() || frames < 2000) {
            effect.draw();
            frames++;
        }
        input.join();
        effect.draw();
        List<Float> moves = new ArrayList<>();
        for (String call : calls()) {
            if (call.startsWith("onTouchMove ")) {
                moves.add(Float.parseFloat(call.split(" ")[1]));
            }
        }
        checkEquals(touches, moves.size());
        for (int i = 0; i < touches; i++) {
            if (Math.abs(moves.get(i) - i / (float) WIDTH) > 1e-3f * Math.max(1, i / WIDTH)) {
                throw new AssertionError("touch " + i + " arrived as x = " + moves.get(i));
            }
        }
        effect.destroy();
    }

    private static void badArguments() {
        Native effect = started();
        TestSupport.startLog();
        effect.loadTexture(null, new int[] {0}, 1, 1);
        effect.loadTexture("noise", new int[] {0, 0}, 2, 2);
        effect.loadTexture("noise", new int[] {0}, 0, 1);
        effect.setParameters(null, new float[] {1f});
        effect.setParameters(new int[] {1, 2}, new float[] {1f});
        effect.onTouch(1, 1, 9);
        effect.drawBgOnly(-1, 5);
        effect.init(0, 0, false);
        check(effect.loadEffect(null) == null, "null path");
        effect.loadModel(null, new byte[] {1});
        checkEquals(Arrays.asList("loadTexture: no texture name",
                        "loadTexture: 'noise' has 2 pixels for 2x2, ignored",
                        "loadTexture: 'noise' has size 0x1, ignored",
                        "setParameters: keys or values missing, ignored",
                        "setParameters: 1 values for 2 keys, ignored",
                        "onTouch: unknown action 9 ignored",
                        "drawBgOnly: surface size -1x5 ignored",
                        "init: surface size 0x0 ignored", "loadEffect: no library path",
                        "loadModel: no model name"),
                Arrays.asList(TestSupport.stopLog()));
        effect.draw();
        checkEquals(Arrays.asList("create", "initLandscape", "draw"), calls());
        effect.destroy();
    }
}
