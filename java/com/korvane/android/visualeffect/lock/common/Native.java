package com.korvane.android.visualeffect.lock.common;

/**
 * The Java face of libtalveQamCommon.so. Each instance hosts at most one effect, whose native
 * address lives in {@link #mEffectId}; draw and the GL calls run on the thread whose EGL
 * context is current, input may come from any thread.
 */
public class Native {
    static {
        System.loadLibrary("talveQamCommon");
    }

    /** Address of this instance's native effect; 0 when there is none. */
    private long mEffectId;

    /** Readies the effect for a surface; recycle drops static textures' pixels once uploaded. */
    public native void init(int width, int height, boolean recycle);

    /** Opens the effect library at path; returns the effect's resource names, or null. */
    public native String[] loadEffect(String path);

    public native void destroy();

    public native void pauseAnimation();

    public native void resumeAnimation();

    /** ARGB pixels of a named texture, row by row; null pixels remove it. */
    public native void loadTexture(String name, int[] pixels, int width, int height);

    /** The bytes of a model file; null data removes it. */
    public native void loadModel(String name, byte[] data);

    /** Draws one frame; true when the effect wants another. */
    public native boolean draw();

    public native void drawBgOnly(int width, int height);

    /** Pixel coordinates, y downwards; action 0-8: pointer 1-3 down, up, move. */
    public native void onTouch(int x, int y, int action);

    public native void clear();

    public native void showUnlock();

    public native void showAffordance(int x, int y);

    public native void setParameters(int[] keys, float[] values);
}
