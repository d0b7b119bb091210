/** Test-only natives: a headless GL context on the calling thread, pixels, logs, hook calls. */
public final class TestSupport {
    private TestSupport() {}

    /** Makes a width x height headless GLES2 context current on this thread. */
    public static native void makeCurrent(int width, int height);

    /** Replaces the current context by a fresh one: the old GL names are gone. */
    public static native void loseContext();

    public static native void clearScreen();

    /** The pixel at (x, y), bottom-left origin, as 0xRRGGBBAA. */
    public static native int readPixel(int x, int y);

    /** Starts capturing stderr, where the library's log lines go. */
    public static native void startLog();

    /** Stops capturing; the "qam.vi" error messages logged meanwhile, in order. */
    public static native String[] stopLog();

    /** The recording effect's hook calls since the last call, one per element. */
    public static native String[] takeCalls();
}
