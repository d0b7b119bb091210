import com.korvane.android.visualeffect.lock.common.Native;
import java.lang.reflect.InvocationTargetException;
import java.util.Arrays;
import java.util.Objects;

// libtalveQamCommon.so through its Java class in a real JVM, a scenario per flow of a client,
// hosting the recording test effect (the colour of parameters 0 to 3 on the screen, its hook
// calls recorded) on a headless GL context of this thread.
public final class NativeTest {
    private static final int SIZE = 64;
    private static final String EFFECT = System.getProperty("qam.effect");
    private static final String NOT_AN_EFFECT = System.getProperty("qam.notAnEffect");

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("qam.support"));
        TestSupport.makeCurrent(SIZE, SIZE);
        String[] scenarios = {"init", "textures", "touches", "draw", "badArguments"};
        int failed = 0;
        for (String scenario : scenarios) {
            TestSupport.takeCalls();
            try {
                NativeTest.class.getDeclaredMethod(scenario).invoke(null);
                System.out.println("ok     " + scenario);
            } catch (InvocationTargetException error) {
                failed++;
                error.getCause().printStackTrace(System.out);
                System.out.println("FAILED " + scenario);
            }
        }
        System.out.println((scenarios.length - failed) + " passed, " + failed + " failed");
        System.exit(failed == 0 ? 0 : 1);
    }

    private static void expect(Object expected, Object actual) {
        if (!Objects.equals(expected, actual)) {
            throw new AssertionError("expected " + expected + " but was " + actual);
        }
    }

    private static Native started() {
        Native effect = new Native();
        expect(Arrays.asList("bg", "noise", "mask"), Arrays.asList(effect.loadEffect(EFFECT)));
        effect.init(SIZE, SIZE, false);
        return effect;
    }

    // Init replays the parameters after queued events, until destroy.
    private static void init() {
        Native effect = new Native();
        effect.showUnlock();
        effect.setParameters(new int[] {3, 1}, new float[] {0.5f, 0.25f});
        effect.loadEffect(EFFECT);
        effect.draw();  // not initialised: events stay queued
        effect.init(SIZE, SIZE, false);
        effect.draw();
        effect.init(SIZE, SIZE, false);  // every init replays the parameters in key order
        effect.draw();
        effect.destroy();
        effect.destroy();  // twice is harmless, and the parameters are forgotten
        effect.loadEffect(EFFECT);
        effect.init(SIZE, SIZE, false);
        effect.draw();
        expect("create\ninitLandscape\nonShowUnlock\nsetParameter 3 0.5\nsetParameter 1 0.25\n"
                        + "setParameter 1 0.25\nsetParameter 3 0.5\ndraw\ninitLandscape\n"
                        + "setParameter 1 0.25\nsetParameter 3 0.5\ndraw\ndestroy\ncreate\n"
                        + "initLandscape\ndraw\n",
                TestSupport.takeCalls());
        effect.destroy();
    }

    private static void textures() {
        Native first = started();
        Native second = started();
        int[] pixels = {0x00405060};
        first.loadTexture("bg", pixels, 1, 1);
        expect(0xFF605040, pixels[0]);  // left in RGBA byte order, made opaque
        first.destroy();
        second.drawBgOnly(SIZE, SIZE);  // shared on the context, outliving who loaded it
        expect(0x405060FF, TestSupport.readPixel(32, 32));
        second.loadTexture("bg", null, 0, 0);
        second.destroy();
    }

    // Touches and pause/resume from an input thread while the GL thread draws: each touch
    // arrives once, in order.
    private static void touches() throws Exception {
        final Native effect = started();
        final int touches = 3000;
        Thread input = new Thread(() -> {
            for (int i = 0; i < touches; i++) {
                effect.onTouch(i, SIZE, 2);
                if (i % 500 == 0) {
                    effect.pauseAnimation();
                    effect.resumeAnimation();
                }
            }
        });
        input.start();
        for (int frames = 0; input.isAlive() || frames < 2000; frames++) {
            effect.draw();
        }
        input.join();
        effect.draw();
        int next = 0;
        for (String call : TestSupport.takeCalls().split("\n")) {
            if (call.startsWith("onTouchMove ")) {
                expect(true, Math.abs(Float.parseFloat(call.split(" ")[1]) * SIZE - next++) < 0.5f);
            }
        }
        expect(touches, next);
        effect.destroy();
    }

    // Draw: skipped before init, rebuilt after a lost context.
    private static void draw() {
        Native effect = new Native();
        expect(false, effect.draw());  // no effect
        effect.loadEffect(EFFECT);
        expect(false, effect.draw());  // not initialised
        effect.init(SIZE, SIZE, false);
        effect.setParameters(new int[] {1, 2}, new float[] {1f, 1f});
        effect.draw();
        expect(0x00FFFFFF, TestSupport.readPixel(3, 3));
        TestSupport.loseContext();
        effect.setParameters(new int[] {0}, new float[] {1f});
        effect.draw();
        expect(0xFFFFFFFF, TestSupport.readPixel(3, 3));
        effect.destroy();
    }

    // Arguments the library cannot read are dropped, each cause said once per effect; a library
    // that does not load leaves the effect as it was.
    private static void badArguments() {
        Native effect = started();
        TestSupport.startLog();
        for (int twice = 0; twice < 2; twice++) {
            effect.loadTexture(null, new int[] {0}, 1, 1);
            effect.loadTexture("noise", new int[] {0, 0}, 2, 2);
            effect.setParameters(null, new float[] {1f});
            effect.setParameters(new int[] {1, 2}, new float[] {1f});
            expect(null, effect.loadEffect(null));
            effect.loadModel(null, new byte[] {1});
        }
        expect("loadTexture: no texture name, ignored\n"
                        + "loadTexture: 'noise' has 2 pixels for 2x2, ignored\n"
                        + "setParameters: keys or values missing, ignored\n"
                        + "setParameters: 1 values for 2 keys, ignored\n"
                        + "loadEffect: no library path, ignored\nloadModel: no model name, ignored\n",
                TestSupport.stopLog());
        expect(null, effect.loadEffect("/nonexistent/libeffect.so"));
        expect(null, effect.loadEffect(NOT_AN_EFFECT));  // a library without createScene
        effect.draw();
        expect("create\ninitLandscape\ndraw\n", TestSupport.takeCalls());
        effect.destroy();
    }
}
