/** Test-only natives: a headless GL context on this thread, pixels, logs, hook calls. */
public final class TestSupport {
    public static native void makeCurrent(int width, int height);

    /** Replaces the current context by a fresh one: the old GL names are gone. */
    public static native void loseContext();

    /** The pixel at (x, y), bottom-left origin, as 0xRRGGBBAA. */
    public static native int readPixel(int x, int y);

    /** Captures stderr, where the library logs, until stopLog returns its messages. */
    public static native void startLog();

    public static native String stopLog();

    /** The recording effect's hook calls since the last call, one a line. */
    public static native String takeCalls();
}
