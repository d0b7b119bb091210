// Every layer as a table of scenarios: inputs, parameters and the pixels worked out by hand.

#include <filesystem>
#include <set>
#include <string>

#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;
using namespace Kinetra;

// A portrait phone screen, the size of the frames left for a person to look at.
constexpr int kFrameW = 1080, kFrameH = 1920;
using Img = std::function<GLuint(Inputs&)>;
using Pixel = std::array<int, 4>;
const Texel kBlack{0, 0, 0, 255}, kWhite{255, 255, 255, 255}, kNone{0, 0, 0, 0};

// Red of the 64-texel ramp (4 · x, opaque) filtered linearly at u, in bytes; u at column x.
const auto ramp = [](double u) { return 256 * u - 2; };
const auto u64 = [](int x) { return (x + 0.5) / 64; };
const auto colour = [](Texel t) { return Img([=](Inputs& in) { return in(t); }); };
const auto given = [](GLuint id) { return Img([=](Inputs&) { return id; }); };
const auto redRamp = [](Inputs& in) {
    return in(64, 64, TexelAt([](int x, int) { return texel(4 * x, 0, 0, 255); }), GL_LINEAR);
};
// 4 · x across, 4 · y up, blue falling across.
const TexelAt gradient = [](int x, int y) { return texel(4 * x, 4 * y, 252 - 4 * x, 255); };
const auto red = [](int x, int y, int r, int tolerance = kLayerTolerance) {
    return Probe{x, y, {r, -1, -1, -1}, tolerance};
};

float uniformFloat(GLuint program, const char* name) {
    float value = 0;
    glGetUniformfv(program, glGetUniformLocation(program, name), &value);
    return value;
}

struct Target {
    int width = 64, height = 64;
    Texel clear = kNone;
};
// Setups that check more than pixels draw first themselves.
template <typename L>
struct Scenario {
    using Setup = std::function<void(L&, Inputs&)>;
    Scenario(const char* n, std::vector<Probe> p, Target t, Setup s)
        : name(n), probes(std::move(p)), target(t), setup(std::move(s)) {}
    Scenario(const char* n, std::vector<Probe> p, Setup s) : Scenario(n, std::move(p), {}, s) {}
    void draw(L& layer, Inputs& in) const {
        setup(layer, in);
        layer.draw();
    }
    const char* name;
    std::vector<Probe> probes;
    Target target;
    Setup setup;
};
template <typename L>
void run(const Scenario<L>& s) {
    SCOPED_TRACE(s.name);
    Inputs in(s.target.width, s.target.height);
    in.target(s.target.width, s.target.height, s.target.clear);
    L layer;
    s.draw(layer, in);
    expectProbes(s.probes);
    if (s.target.width == kFrameW) {
        std::filesystem::create_directories(LAYER_FRAMES_DIR);
        const std::string path = std::string(LAYER_FRAMES_DIR) + "/" + s.name + ".png";
        EXPECT_TRUE(qam::writePng(path, qam::readFramebuffer(kFrameW, kFrameH))) << path;
    }
}

// What the brushes' frames draw from, 64 x 64: a picture, the gradient, a field turning about
// the middle within 24 texels of it, alpha 1 within 16 texels of the middle, 0 from 32.
struct Stock {
    GLuint checks, gradient, swirl, blob;
};
Stock stock(Inputs& in) {
    const Texel dark{30, 30, 60, 255}, light{230, 200, 90, 255};
    auto swirl = [](int x, int y) {
        const int dx = x - 32, dy = y - 32;
        return texel(128 - 4 * dy, 128 + 4 * dx, 255, dx * dx + dy * dy < 24 * 24 ? 255 : 0);
    };
    auto blob = [](int x, int y) {
        return texel(0, 0, 0, near(255 * (2 - std::hypot(x - 32.0, y - 32.0) / 16)));
    };
    return {in(64, 64, [=](int x, int y) { return (x / 8 + y / 8) % 2 ? light : dark; }),
            in(64, 64, gradient, GL_LINEAR), in(64, 64, swirl, GL_LINEAR),
            in(64, 64, blob, GL_LINEAR)};
}

// A 96 x 64 "bg", filtered linearly: red 60, green 4 · row, blue 200; its colour near the bottom
// of a full-size frame (sides cropped), read bottom-up (advect brush) or top-down (mix brush).
void background() {
    namedTexture("bg", 96, 64,
                 texels(96, 64, [](int, int y) { return texel(60, 4 * y, 200, 255); }), true);
}
Probe backgroundLow(bool topDown) {
    return {5, 100, {60, near(256 * (topDown ? 1 - 100.5 / 1920 : 100.5 / 1920) - 2), 200, 255}};
}

// A screen-wide square quad centred on the screen, masked by a disc of coverage 1 within 0.4
// of its centre, fading to 0 at 0.47.
template <typename Brush>
void centreDisc(Brush& brush, int w, int h) {
    namedTexture("disc", 128, 128, texels(128, 128, [](int x, int y) {
                     const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
                     return Texel{255, 255, 255, byte((0.47 - r) / 0.07)};
                 }));
    brush.initialize(w, h);
    place(brush, w, w, w / 2, h / 2);
    brush.setMaskTexture("disc");
}

// A ring of radius 0.4 screen widths about the centre, on a texture of the screen's aspect;
// a pattern of scattered sparkles.
GLuint ringShape(Inputs& in) {
    auto ring = [](int x, int y) {
        const double d = std::hypot(x + 0.5 - 54, y + 0.5 - 96) / 108;
        return Texel{byte(std::exp(-std::pow((d - 0.4) / 0.06, 2))), 0, 0, 255};
    };
    return in(108, 192, ring, GL_LINEAR);
}
// The disc of outward directions brilliant radial draws over the ring shape.
void directions(KNDrawBrilliantRadial& radial, Inputs& in, GLuint shape) {
    const TexelAt sparkles = [](int x, int y) {
        return Texel{0, 0, 0, byte((x * 73856093u ^ y * 19349663u) % 7 == 0 ? 1 : 0.235)};
    };
    radial.initialize(in.w, in.h);
    radial.setSize(in.w * 25 / 27, in.w * 25 / 27);
    radial.setPosition(in.w / 2, in.h / 2, 0);
    radial.setAlphaShapeTextureID(shape);
    radial.setPatternTextureID(in(64, 64, sparkles, GL_LINEAR));
}
// The brilliant chain as an effect runs it: the directions in a target that reads "no
// direction" around them, then their streaks as grey in an opaque black target, left bound
// (its alpha kept); returns that target's texture.
GLuint streaks(KNDrawBrilliantAdvect& advect, Inputs& in, GLuint shape) {
    const GLuint field = in.target(in.w, in.h, {128, 128, 0, 255}).getFBOTexture();
    KNDrawBrilliantRadial radial;
    directions(radial, in, shape);
    radial.draw();
    const GLuint bound = in.target(in.w, in.h, kBlack).getFBOTexture();
    advect.initialize(in.w, in.h);
    advect.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);
    advect.setRadialTextureID(field);
    return bound;
}

template <typename Brush>
using Tune = std::function<void(Brush&)>;
using Fades = std::vector<std::pair<float, double>>;  // uAlpha, the coverage left
// The mix brushes' tone: brightness 1, the saturation, and the red, green and blue weights
// (saturation 1 leaves the density as it is, whatever the weights).
template <typename Brush>
void tone(Brush& b, float saturation, float r = 0, float g = 0, float blue = 0) {
    b.setBrightness(1);
    b.setSaturation(saturation);
    b.setRedSaturation(r);
    b.setGreenSaturation(g);
    b.setBlueSaturation(blue);
}

// Each layer's scenarios: rows(), the first a full-size frame left as <frames>/<name>.png
// for a person to look at; bad(L&), sizes that truncate to no int, which it logs and drops.
template <typename Layer>
struct Table;
template <typename Layer>
struct Names {
    using L = Layer;
    using S = Scenario<L>;
};

template <>
struct Table<KNDrawAdvectColorBrush> : Names<KNDrawAdvectColorBrush> {
    static void bad(L& b) { b.initialize(64, -1.0f / 0.0f, 0); }
    // Initialises with: previous frame, noise, radial field, radial colour, pattern, background.
    static void set(L& b, Inputs& in, std::array<GLuint, 6> t) {
        b.initialize(in.w, in.h, 0);
        b.setFBOID(t[0]);
        b.setVelocityRadialTextureID(t[1], t[2], t[3]);
        b.changePatternColorTextureID(t[4]);
        b.setBackgroundTextureID(t[5]);
    }
    // The shift along u from the radial field's bytes (red; blue: strength) and the noise's red.
    static double shift(int red, int blue, int noise, double radialScalar, double noiseScalar) {
        return ((unit(red) - 0.5) * 10 * radialScalar + (unit(noise) - 0.5) * noiseScalar) *
               unit(blue) * 0.0021;
    }
    // The red ramp advected along `field` and `noise`, drifting towards a blue pattern by
    // 0.75 %: blue 1.9, one step either way from no drift (0) and the water brush's 3 % (8).
    static S advect(
        const char* name, Texel field, Texel noise, std::vector<int> xs, double du,
        Tune<L> tune = [](L&) {}) {
        std::vector<Probe> probes{{xs[0], 32, {-1, 0, 2, 255}, 1}};
        for (int x : xs) {
            probes.push_back(red(x, 32, byteOf(ramp(u64(x) + du) / 255 * 0.9925)));
        }
        return {name, probes, [=](L& b, Inputs& in) {
                    const GLuint blue = in(Texel{0, 0, 255, 255});
                    set(b, in, {redRamp(in), in(noise), in(field), in(kNone), blue, kUnset});
                    tune(b);
                }};
    }
    static void scene(L& b, Inputs& in) {
        const Stock s = stock(in);
        set(b, in, {s.checks, s.gradient, s.swirl, s.blob, s.gradient, s.gradient});
    }
    static std::vector<S> rows() {
        const Texel still{128, 128, 0, 255};
        const double a = unit(128);  // the radial colour's alpha
        const double alpha = (1 - a) + a * a;
        const double lit = (2 - a) * a * alpha;
        return {
            S("KNDrawAdvectColorBrush", {}, {kFrameW, kFrameH, kNone}, scene),
            advect("fetches upstream along the field", {255, 128, 255, 255}, still, {4, 20, 40},
                   shift(255, 255, 128, 9.2625, 15.625)),
            advect("the noise moves by its own scalar, 125 x 0.5", {128, 128, 255, 255},
                   {255, 128, 0, 255}, {20}, shift(128, 255, 255, 9.2625, 62.5),
                   [](L& b) { b.setNoiseVectorScalar(0.5f); }),
            // rgb · (2 - a) laid over black by a; the result's alpha (1 - a) + a · a, and
            // blending onto the cleared target multiplies by it.
            S("lays the brightened radial colour over by its alpha",
              {{32, 32, {byteOf(0.4 * lit), byteOf(0.2 * lit), 0, byteOf(alpha * alpha)}}},
              [=](L& b, Inputs& in) {
                  const GLuint colour = in(Texel{102, 51, 0, 128});
                  set(b, in, {in(kBlack), in(kBlack), in(still), colour, in(kBlack), kUnset});
              }),
            // No field: mix(pattern, background, 0.6) of a red 200 pattern (black at the top) and
            // a green / blue background; the quad moved right, the background not.
            S("shows the background, which stays with the screen when the quad moves",
              {{8, 10, {0, 0, 0, 0}, 0}, {24, 10, {80, 153, 0, 255}}, {40, 10, {80, 0, 153, 255}}},
              [](L& b, Inputs& in) {
                  const GLuint none = in(Texel{255, 255, 255, 0});
                  const GLuint pattern =
                      in(64, 64, [](int, int y) { return texel(y < 32 ? 200 : 0, 0, 0, 255); });
                  const GLuint halves = in(64, 64, [](int x, int) {
                      return x < 32 ? Texel{0, 255, 0, 255} : Texel{0, 0, 255, 255};
                  });
                  set(b, in, {pattern, none, none, none, pattern, halves});
                  b.setTranslate(16, 0, 0);
              }),
            S("leaves blending on; the reciprocals of the whole-pixel width and height", {},
              [](L& b, Inputs&) {
                  b.initialize(720.9f, 64, 0);
                  glDisable(GL_BLEND);
                  b.draw();
                  const GLuint program = b.getShaderManager()->getProgram();
                  EXPECT_TRUE(glIsEnabled(GL_BLEND));
                  EXPECT_FLOAT_EQ(uniformFloat(program, "uInvScreenX"), 1.0f / 720.0f);
                  EXPECT_FLOAT_EQ(uniformFloat(program, "uInvScreenY"), 1.0f / 64.0f);
              }),
        };
    }
};

template <>
struct Table<KNDrawBGAdvectColorBrush> : Names<KNDrawBGAdvectColorBrush> {
    static void bad(L& b) { b.resizeSurface(10, std::nanf("")); }
    // The red ramp pulled along +u at full strength below row 32, no field above; the background
    // green 4 · row, blue, nearest. The quad moved up by `dy`, or given a new surface.
    static S advect(const char* name, float dy, std::vector<Probe> probes, bool resized = false) {
        return {name, probes, [=](L& b, Inputs& in) {
                    auto rows = [](int, int y) { return texel(0, 4 * y, 255, 255); };
                    auto field = [](int, int y) { return texel(255, 128, 255, y < 32 ? 255 : 0); };
                    b.initialize(in.w, in.h, 0);
                    b.setFBOID(redRamp(in));
                    b.changeBGTextureID(in(64, 64, rows));
                    b.setVelocityRadialTextureID(in(Texel{128, 128, 0, 255}), in(64, 64, field));
                    b.setNoiseVectorScalar(0);
                    b.setRadialVectorScalar(10);  // 185.25
                    b.setTranslate(0, dy, 0);
                    if (resized) {
                        b.resizeSurface(in.w, in.h);
                    }
                }};
    }
    static void scene(L& b, Inputs& in) {
        const Stock s = stock(in);
        b.initialize(in.w, in.h, 0);
        b.setRadialVectorScalar(10);
        b.setFBOID(s.checks);
        b.changeBGTextureID(s.gradient);
        b.setVelocityRadialTextureID(s.swirl, s.swirl);
    }
    static std::vector<S> rows() {
        // (1 - 0.5) · 10 · 185.25 · 0.0175 · 0.006: no drift, nothing of the background.
        const double du = 0.5 * 10 * 185.25 * 0.0175 * 0.006;
        std::vector<Probe> inside{{20, 40, {0, 160, 255, 255}, 1}, {50, 60, {0, 240, 255, 255}, 1}};
        for (int x : {4, 20, 40}) {
            inside.push_back({x, 10, {byteOf(ramp(u64(x) + du) / 255), 0, 0, 255}});
        }
        return {
            S("KNDrawBGAdvectColorBrush", {}, {kFrameW, kFrameH, kNone}, scene),
            advect("advects without drift and shows the background elsewhere", 0, inside),
            advect("the background moves with the quad", 8,
                   {{20, 48, {0, 160, 255, 255}, 1}, {20, 4, {0, 0, 0, 0}, 0}}),
            // Bound as it is, the forgotten background reads opaque black.
            advect("a new surface forgets the background", 0, {{20, 40, {0, 0, 0, 255}, 0}}, true),
        };
    }
};

template <>
struct Table<KNDrawBGAdvectWaterBrush> : Names<KNDrawBGAdvectWaterBrush> {
    static void bad(L& b) { b.initialize(1.0f / 0.0f, 64, 0); }
    // The red ramp advected over a black background after `tune`; the probe's red is 0.97 of
    // the ramp read `du` upstream.
    static S advect(const char* name, int x, Img noise, Texel field, double du, Tune<L> tune) {
        return S(name, {red(x, 30, near(0.97 * ramp(u64(x) + du)))}, [=](L& b, Inputs& in) {
            b.initialize(in.w, in.h, 0);
            b.setFBOID(redRamp(in));
            b.changeBGTextureID(in(kBlack));
            tune(b);
            b.setVelocityRadialTextureID(noise(in), in(field));
        });
    }
    static void scene(L& b, Inputs& in) {
        const Stock s = stock(in);
        background();
        b.initialize(in.w, in.h, 0);
        b.setBGTexture("bg", false);
        b.setRadialVectorScalar(10);
        b.setVelocityRadialTextureID(s.gradient, s.swirl);
        b.setFBOID(s.checks);
    }
    static std::vector<S> rows() {
        const Texel still{128, 128, 255, 255};  // no direction, near enough
        constexpr double kStep = 0.0175 * 0.006;
        const double radial = 0.5 * 10 * 185.25 * kStep, noise = 0.5 * 1000 * kStep;
        // Noise pushing +x in its left quarter only, read where the 2:1 "bg" is: its middle half.
        const Img quarter = [](Inputs& in) {
            return in(4, 1, [](int x, int) { return texel(x == 0 ? 255 : 128, 128, 0, 255); });
        };
        const Tune<L> rs10 = [](L& b) { b.setRadialVectorScalar(10); };
        const Tune<L> ns8 = [](L& b) { b.setNoiseVectorScalar(8); };
        const Tune<L> wide = [=](L& b) {  // a 2:1 "bg"
            namedTexture("bg", 128, 64, std::vector<uint8_t>(128 * 64 * 4, 0));
            b.setBGTexture("bg", false);
            ns8(b);
        };
        return {
            S("KNDrawBGAdvectWaterBrush", {backgroundLow(false)}, {kFrameW, kFrameH, kNone}, scene),
            S("shows the background unblended where no field is",
              {{5, 5, {255, 0, 0, 128}, 0}, {60, 5, {0, 255, 0, 128}, 0}}, {64, 64, kWhite},
              [](L& b, Inputs& in) {
                  const GLuint none = in(Texel{255, 255, 255, 0});
                  b.initialize(in.w, in.h, 0);
                  b.changeBGTextureID(in(2, 1, {255, 0, 0, 128, 0, 255, 0, 128}));
                  b.setVelocityRadialTextureID(none, none);
                  glEnable(GL_BLEND);
              }),
            advect("the field at 18.525 x 10", 20, colour(still), {255, 128, 255, 255}, radial,
                   rs10),
            advect("the field at half strength", 20, colour(still), {255, 128, 128, 255},
                   radial * 128 / 255, rs10),
            advect("the noise at 125 x 8", 20, colour({255, 128, 0, 255}), still, noise, ns8),
            advect("the noise is read at the fitted background's", 8, quarter, still, 0, wide),
        };
    }
};

template <>
struct Table<KNDrawMixColorBrush> : Names<KNDrawMixColorBrush> {
    static void bad(L& b) { b.initialize(std::nanf(""), 64, 0); }
    // The colour density ochre (0.6, 0.4, 0.2) over `base` by the mix alpha `a` (0.95 a⁴).
    static S ochre(const char* name, std::vector<Probe> probes, Tune<L> tune, uint8_t a = 255,
                   Img base = colour(kBlack)) {
        return S(name, probes, [=](L& b, Inputs& in) {
            b.initialize(in.w, in.h, 0);
            tune(b);
            b.changeBGTextureID(base(in));
            b.setMixColorTextureID(in(Texel{0, 0, 0, a}), in(kBlack), in(Texel{153, 102, 51, 255}));
        });
    }
    static void scene(L& b, Inputs& in) {
        const Stock s = stock(in);
        b.initialize(in.w, in.h, 0);
        b.changeBGTextureID(s.gradient);
        b.setMixColorTextureID(s.blob, s.checks, s.gradient);
    }
    static std::vector<S> rows() {
        // Saturation about P = sqrt((r² + g² + b²) · red weight), the same P for every channel;
        // the green and blue weights take no part.
        const int q = byteOf(0.5 * unit(byteOf(std::sqrt(0.56) * 0.95)));
        const double a = unit(128), w = std::pow(a, 4.0) * 0.95;  // 0.0603
        // Base rows 4 · y, drawn upside down (texture row v = 1 at the bottom): green 0 at the top.
        const Img rows = [](Inputs& in) {
            return in(64, 64, [](int, int y) { return texel(255, 4 * y, 255, 255); });
        };
        const Tune<L> plain = [](L& b) { tone(b, 1); };
        const Pixel weighed{byteOf(1 - w + 0.6 * a * w), byteOf(0.4 * a * w),
                            byteOf(1 - w + 0.2 * a * w), 255};
        return {
            S("KNDrawMixColorBrush", {}, {kFrameW, kFrameH, kNone}, scene),
            // Brightness 1.1: (0.66, 0.44, 0.22), P 0.4752; saturation 1.2, times 0.95.
            ochre("brightens and saturates by the defaults", {{32, 32, {169, 105, 41, 255}}},
                  [](L&) {}),
            ochre("saturation 0 turns every channel to the red-weighted P; the ratio is the alpha",
                  {{32, 32, {q, q, q, byteOf(0.25)}}},
                  [](L& b) {
                      tone(b, 0, 1, 5, 0);
                      b.setBrightWeight(9);
                      b.setAlpha(0.5f);
                  }),
            ochre("the density weighs 0.95 alpha to the fourth", {{10, 63, weighed}}, plain, 128,
                  rows),
            S("zero textures are bound as they are and read opaque black", {{5, 5, {8, 5, 3, 255}}},
              [](L& b, Inputs& in) {
                  b.initialize(in.w, in.h, 0);
                  b.changeBGTextureID(in(Texel{153, 102, 51, 255}));
              }),
        };
    }
};

template <>
struct Table<KNDrawMixWaterBrush> : Names<KNDrawMixWaterBrush> {
    static void bad(L& b) { b.initialize(64, 1e12f, 0); }
    // The density (0.8, 0.4, 0.2, 0.4) fully shown over blue, after `tune`.
    static S density(const char* name, Pixel expected, Tune<L> tune) {
        return S(name, {{30, 30, expected}}, [=](L& b, Inputs& in) {
            b.initialize(in.w, in.h, 0);
            b.changeBGTextureID(in(Texel{0, 0, 255, 255}));
            b.setAlphaDensityTextureID(in(kBlack), in(Texel{204, 102, 51, 102}));
            tune(b);
        });
    }
    // A 2:1 "bg" of red, green, green, blue quarters; the surface shows its middle half. The
    // density: bottom row white, top row black, drawn unflipped, shown by `alpha`.
    static S fitted(const char* name, uint8_t alpha, bool resized, std::vector<Probe> probes) {
        return S(name, probes, {64, 64, {255, 0, 255, 255}}, [=](L& b, Inputs& in) {
            namedTexture("bg", 4, 2, texels(4, 2, [](int x, int) {
                             return texel(x == 0 ? 255 : 0, x % 3 ? 255 : 0, x == 3 ? 255 : 0, 255);
                         }));
            b.initialize(in.w, in.h, 0);
            b.setBGTexture("bg", true);
            if (resized) {
                b.resizeSurface(in.w, in.h);  // forgets the background, bound as it is
            }
            b.setAlphaDensityTextureID(in(Texel{0, 0, 0, alpha}),
                                       in(1, 2, {255, 255, 255, 255, 0, 0, 0, 255}));
            tone(b, 1);
        });
    }
    // The gradient as density through the blob over the fitted background; in the middle a near
    // grey density (126 of 255) stays grey, brightened by 1.1.
    static void scene(L& b, Inputs& in) {
        const Stock s = stock(in);
        background();
        b.initialize(in.w, in.h, 0);
        b.setBGTexture("bg", false);
        b.setAlphaDensityTextureID(s.blob, s.gradient);
    }
    static std::vector<S> rows() {
        const int grey = byteOf((256 * 0.5 - 2) / 255 * 1.1);
        const Pixel green{128, 255, 128, 255}, dark{0, 127, 0, 255};
        return {
            S("KNDrawMixWaterBrush", {backgroundLow(true), {540, 960, {grey, grey, grey, 255}}},
              {kFrameW, kFrameH, kNone}, scene),
            // P = sqrt(0.64 · 0.25 + 0.16 · 0.5 + 0.04 · 0.25) = 0.5: (0.95, 0.35, 0.05); the mix
            // colour brush's red-weight-only P would be sqrt(0.84 · 0.25).
            density("saturates about a grey weighted per channel", {242, 89, 13, 102},
                    [](L& b) { tone(b, 1.5f, 0.25f, 0.5f, 0.25f); }),
            // sqrt(0.64 · 0.25 + 0.16 · 1) = 0.566: any two weights swapped give another grey.
            density("saturation 0 turns every channel to P", {144, 144, 144, 102},
                    [](L& b) { tone(b, 0, 0.25f, 1, 0); }),
            // mix(background, density, 0.5): x = 1 and 62 still read the middle half's green.
            fitted("alpha 0.5 mixes the fitted background and the density, row 0 at the top", 128,
                   false, {{10, 60, green}, {1, 60, green}, {62, 3, dark}, {10, 3, dark}}),
            fitted("a new surface forgets the background", 0, true, {{10, 10, {0, 0, 0, 255}, 0}}),
        };
    }
};

// The two radial field brushes: a 200 x 200 quad centred on (50.5, 32.5), or on (32.5, 50.5)
// when `up`, over the whole surface; the mask "mask"; the water brush's profile "tube", red 1
// left, 64 / 255 right; the x and y ratios, fade and time step.
struct Set {
    float rx = 1, ry = 1, alpha = 0, step = 0;
};
template <typename Brush>
struct Radial : Names<Brush> {
    static Scenario<Brush> field(const char* name, std::vector<Probe> probes, Set set,
                                 Texel mask = kWhite, bool up = false, Texel clear = kNone) {
        return {name, probes, {64, 64, clear}, [=](Brush& b, Inputs& in) {
                    namedTexture("mask", mask);
                    b.initialize(in.w, in.h);
                    place(b, 200, 200, up ? 32.5f : 50.5f, up ? 50.5f : 32.5f);
                    b.setMaskTexture("mask");
                    if constexpr (std::is_same_v<Brush, KNDrawRadialWaterBrush>) {
                        namedTexture("tube", 2, 1, {255, 0, 0, 255, 64, 0, 0, 255});
                        b.setGraphTexture("tube");
                    }
                    b.setRatio(set.rx, set.ry);
                    b.setAlpha(set.alpha);
                    b.setTimeStep(set.step);
                }};
    }
};

template <>
struct Table<KNDrawRadialColorBrush> : Radial<KNDrawRadialColorBrush> {
    static void bad(L& b) { b.resizeSurface(1e20f, 10); }
    // 200 pixels left of the centre. Beyond about 256 pixels the squared length overflows
    // mediump where it is a half float (llvmpipe's is).
    static void scene(L& b, Inputs& in) {
        centreDisc(b, in.w, in.h);
        b.setTimeStep(0.8f);
    }
    static std::vector<S> rows() {
        const std::vector<Probe> at{{340, 960, {153, 128, 204, 255}}, {5, 5, {0, 0, 0, 255}, 0}};
        const Texel faint{255, 255, 255, 102};  // coverage 0.4
        std::vector<S> rows = {
            S("KNDrawRadialColorBrush", at, {kFrameW, kFrameH, kBlack}, scene),
            // 0.5 + 0.1 · d / 20 inside the core of 20 pixels, 0.5 ± 0.1 outside.
            field("points towards its centre with a soft core",
                  {{40, 32, {near(0.55 * 255), 128, near(0.25 * 255), 255}},
                   red(10, 32, 153),
                   red(60, 32, near(0.4525 * 255)),
                   {50, 2, {128, 153, -1, -1}}},
                  Set{1, 1, 0, 0.25f}),
            field("each axis has its own ratio",
                  {red(12, 50, near(0.3 * 255)), {32, 10, {-1, near(0.55 * 255), -1, -1}}},
                  Set{-2, 0.5f}, kWhite, true),
            // Colour by source alpha over the target, alpha by one over the rest.
            field("blends over the target", {{40, 32, {near(0.55 * 0.4 * 255), -1, 255, 255}}},
                  Set{1, 1, 0, 1}, faint, false, {0, 0, 255, 255}),
        };
        // 1 - uAlpha clamped to [0, 1] before it scales the mask: -1 gives 0.4, not 0.8.
        for (const auto& [alpha, cover] : Fades{{-1, 0.4}, {0.5f, 0.2}, {3, 0}}) {
            const Pixel covered{near(0.55 * cover * 255), -1, -1, near(cover * 255)};
            rows.push_back(field("clamps the fade", {{40, 32, covered}}, Set{1, 1, alpha}, faint));
        }
        return rows;
    }
};

template <>
struct Table<KNDrawRadialWaterBrush> : Radial<KNDrawRadialWaterBrush> {
    static void bad(L& b) { b.resizeSurface(64, 1.0f / 0.0f); }
    // A profile strongest on a ring at 0.15 from the middle, within the field's reach (about
    // 256 pixels in half-float mediump); on it, 162 pixels left: full strength, pointing right.
    static void scene(L& b, Inputs& in) {
        namedTexture("ring", 128, 128, texels(128, 128, [](int x, int y) {
                         const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
                         return Texel{byte(1 - std::abs(r - 0.15) * 10), 0, 0, 255};
                     }));
        centreDisc(b, in.w, in.h);
        b.setGraphTexture("ring");
        b.setTimeStep(1);
    }
    static std::vector<S> rows() {
        const std::vector<Probe> at{{378, 960, {153, 128, -1, -1}},
                                    {378, 960, {-1, -1, 248, -1}, 7},
                                    {530, 960, {-1, -1, 0, -1}, 9}};
        std::vector<S> rows = {
            S("KNDrawRadialWaterBrush", at, {kFrameW, kFrameH, kBlack}, scene),
            // 0.5 ± 0.1 with no core; strength the time step times the profile.
            field("points towards its centre without a core",
                  {{40, 32, {153, 128, 128, 255}}, red(49, 32, 153), {60, 32, {102, -1, 32, -1}}},
                  Set{1, 1, 0, 0.5f}),
            field("each axis has its own ratio",
                  {red(40, 32, near(0.7 * 255)), {50, 2, {128, near(0.55 * 255), -1, -1}}},
                  Set{2, 0.5f}),
        };
        for (const auto& [alpha, cover] : Fades{{-2, 0.4}, {0.25f, 0.3}, {1.5f, 0}}) {
            rows.push_back(field("clamps the fade", {{40, 32, {-1, -1, -1, near(cover * 255)}}},
                                 Set{1, 1, alpha}, {255, 255, 255, 102}));
        }
        return rows;
    }
};

template <>
struct Table<KNDrawRadialColorBrushColor> : Names<KNDrawRadialColorBrushColor> {
    static void bad(L& b) { b.setSize(-5e9f, 10); }
    // "palette": red, green / blue, white, bottom row first. "mask": the left half opaque, the
    // right half at 0.4. A 16 x 16 quad centred on (x, y), the palette over `ratio` screens.
    static S placed(const char* name, float x, float y, float ratio, std::vector<Probe> probes) {
        return S(name, probes, [=](L& b, Inputs& in) {
            namedTexture("palette", 2, 2,
                         {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255});
            namedTexture("mask", 2, 1, {0, 0, 0, 255, 0, 0, 0, 102});
            b.initialize(in.w, in.h);
            b.setMaskTexture("mask");
            b.setColorTexture("palette");
            b.setResolutionRatio(ratio);
            place(b, 16, 16, x, y);
        });
    }
    // The gradient through the disc; the screen's middle reads the image's middle.
    static void scene(L& b, Inputs& in) {
        namedTexture("colours", 64, 64, texels(64, 64, gradient), true);
        centreDisc(b, in.w, in.h);
        b.setColorTexture("colours");
        b.setResolutionRatio(1);
    }
    static std::vector<S> rows() {
        const std::vector<Probe> at{
            {540, 960, {near(256 * 540.5 / 1080 - 2), near(256 * 960.5 / 1920 - 2), -1, -1}},
            {5, 5, {0, 0, 0, 255}, 0}};
        const Pixel red{255, 0, 0, 255}, none{0, 0, 0, 0};
        return {
            S("KNDrawRadialColorBrushColor", at, {kFrameW, kFrameH, kBlack}, scene),
            // Colour by source alpha, and alpha by source alpha too.
            placed("fills the mask with the screen's colour", 16, 16, 1,
                   {{10, 12, red, 0}, {20, 12, {102, -1, -1, 41}}, {4, 12, none, 0}}),
            placed("over two screens this one shows the bottom-left quarter", 16, 48, 2,
                   {{10, 50, red, 0}}),
        };
    }
};

template <>
struct Table<KNDrawBrilliantAdvect> : Names<KNDrawBrilliantAdvect> {
    static void bad(L&) {}  // it takes any size
    static S smear(const char* name, int w, int h, Img field, std::vector<Probe> probes,
                   Texel clear = kNone, bool blended = false) {
        return S(name, probes, {w, h, clear}, [=](L& a, Inputs& in) {
            a.initialize(in.w, in.h);
            if (!blended) {
                a.setBlendOption(GL_ONE, GL_ZERO);
            }
            a.setRadialTextureID(field(in));
        });
    }
    static std::vector<Probe> line(int x, int y, int dx, int dy, std::vector<int> reds) {
        std::vector<Probe> probes;
        for (int i = 0; i < static_cast<int>(reds.size()); ++i) {
            probes.push_back(red(x + dx * i, y + dy * i, reds[i], 1));
        }
        return probes;
    }
    static void scene(L& a, Inputs& in) { streaks(a, in, ringShape(in)); }
    static std::vector<S> rows() {
        // 125 texels make one tap (0.02 · 0.4 = 0.008 of the texture) exactly one texel. A
        // velocity along +u (red 1, green 0.5), lit (blue 1) in column 40 only.
        constexpr int kTaps = 125;
        const Img lit = [](Inputs& in) {
            return in(kTaps, 3, [](int x, int) { return texel(255, 128, x == 40 ? 255 : 0, 255); });
        };
        const Img vertical = [](Inputs& in) {
            return in(3, kTaps, [](int, int y) { return texel(128, 255, y == 40 ? 255 : 0, 255); });
        };
        const Img exact = [](Inputs& in) { return in.floats({0.5f, 0.5f, 0.25f, 1}); };
        // The streak's weights as bytes: 0, 0.5, 0.5, 0.4, 0.4, 0.3, 0.2, 0.1; lowp computed
        // in single precision, one step for the 8-bit write.
        const std::vector<int> weights{0, 0, 128, 128, 102, 102, 77, 51, 26, 0};
        std::vector<Probe> along = line(39, 1, 1, 0, weights);
        along.push_back({41, 1, {128, 128, 128, 128}, 1});  // every channel carries it
        return {
            S("KNDrawBrilliantAdvect", {red(972, 960, 122)}, {kFrameW, kFrameH, kBlack}, scene),
            smear("smears a lit column into the eight-tap streak", kTaps, 3, lit, along),
            // Texel row 40 + i gets weight i; the base coordinates put row 124 at the bottom.
            smear("a vertical streak follows the flipped coordinates", 3, kTaps, vertical,
                  line(1, 85, 0, -1, weights)),
            // Blue 0.2 over alpha 0.502 is 0.398, times the weights' sum 2.4.
            smear("divides by alpha and sums the weights", 16, 16, colour({255, 128, 51, 128}),
                  {{8, 8, {244, 244, 244, 244}, 1}}),
            // initialize's source-alpha blend over transparent black: 0.6 · 0.6.
            smear("leaves blending as the caller set it", 16, 16, colour({255, 128, 64, 255}),
                  {{8, 8, {92, 92, 92, 92}, 1}}, kNone, true),
            smear("discards exactly no direction", 16, 16, exact,
                  {{8, 8, {0, 0, 255, 255}, 0}, {0, 15, {0, 0, 255, 255}, 0}}, {0, 0, 255, 255}),
        };
    }
};

template <>
struct Table<KNDrawBrilliantRadial> : Names<KNDrawBrilliantRadial> {
    static void bad(L& r) { r.setSize(std::nanf(""), 10); }
    // A quad over the odd surface (pixel (31, 31) samples its centre), `shape`, `pattern`, `tune`.
    static S cover(
        const char* name, std::vector<Probe> probes, Img shape, Img pattern,
        Tune<L> tune = [](L&) {}, Target target = {63, 63, {255, 0, 255, 255}}) {
        return S(name, probes, target, [=](L& r, Inputs& in) {
            r.initialize(in.w, in.h);
            r.setSize(in.w, in.h);
            r.setPosition(in.w / 2.0f, in.h / 2.0f, 0);
            r.setAlphaShapeTextureID(shape(in));
            r.setPatternTextureID(pattern(in));
            tune(r);
        });
    }
    // A 2 x 2 texture, image rows top first (v = 0 at the top of the surface).
    static Img quadrants(Texel topLeft, Texel topRight, Texel bottomLeft, Texel bottomRight) {
        return [=](Inputs& in) {
            return in(2, 2, [=](int x, int y) {
                return y ? (x ? bottomRight : bottomLeft) : (x ? topRight : topLeft);
            });
        };
    }
    // Blue at the quadrant centres: top-left, top-right, bottom-left, bottom-right.
    static std::vector<Probe> blues(int w, int h, Pixel b) {
        return {{w / 4, 3 * h / 4, {-1, -1, b[0], -1}, 1},
                {3 * w / 4, 3 * h / 4, {-1, -1, b[1], -1}, 1},
                {w / 4, h / 4, {-1, -1, b[2], -1}, 1},
                {3 * w / 4, h / 4, {-1, -1, b[3], -1}, 1}};
    }
    static void scene(L& r, Inputs& in) { directions(r, in, ringShape(in)); }
    static std::vector<S> rows() {
        const std::vector<Probe> at{{0, 0, {128, 128, 0, 255}, 0}, {972, 960, {-1, -1, 60, -1}}};
        const Img solid = colour({255, 0, 0, 255}), opaque = colour(kBlack);
        const Img pattern = quadrants(kBlack, {0, 0, 0, 51}, {0, 0, 0, 102}, {0, 0, 0, 204});
        const Pixel magenta{255, 0, 255, 255};
        return {
            S("KNDrawBrilliantRadial", at, {kFrameW, kFrameH, {128, 128, 0, 255}}, scene),
            // N = (0, 0) gives (0.5, 0.5); 25 pixels out N = 50 / 63 = 0.794 along x, squeezed
            // by 0.5625 along y; beyond magnitude 1 discarded.
            cover("draws the inscribed disc of outward directions",
                  {{31, 31, {128, 128, 255, 255}, 1},
                   {56, 31, {229, 128, 255, 255}},
                   {31, 6, {128, 71, 255, 255}},
                   {53, 53, {217, 178, 255, 255}},  // magnitude 0.976
                   {54, 54, magenta, 0}},           // 1.066
                  solid, opaque),
            // Red (0.794 · 0.5 + 1) / 2, alpha 0.5: on the first draw initialize's blend, source
            // alpha for every channel; after it the layer's own option, alpha weight one.
            cover("the time step scales; its blend option waits a draw; depth test off",
                  {{56, 31, {89, 64, 128, 128}}}, solid, opaque,
                  [](L& r) {
                      r.setAlpha(0.5f);
                      r.setDepthTest(true);
                      r.draw();
                      EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
                      expectProbes({{56, 31, {89, 64, 128, 64}}});
                      clearTo(kNone);
                  },
                  {63, 63, kNone}),
            cover("masks with the screen alpha shape times the pattern",
                  blues(63, 63, {128, 64, 32, 0}),
                  quadrants({255, 0, 0, 255}, {128, 0, 0, 255}, {64, 0, 0, 255}, kBlack),
                  colour({0, 0, 0, 128})),
            cover("a square surface lays the pattern on as it is",
                  blues(63, 63, {255, 51, 102, 204}), solid, pattern),
            cover("a landscape one transposes it", blues(80, 48, {255, 102, 51, 204}), solid,
                  pattern, [](L&) {}, {80, 48, {255, 0, 255, 255}}),
        };
    }
};

template <>
struct Table<KNDrawBrilliantRing> : Names<KNDrawBrilliantRing> {
    static void bad(L& r) {
        r.setSize(1e10f, 10);
        r.resizeSurface(10, -1.0f / 0.0f);
    }
    // A ring over the surface writing its output unblended, at `alpha` (1 unless given), from
    // background, shine, diamond, alpha map and blur.
    static S ring(const char* name, std::array<Img, 5> images, std::vector<Probe> probes,
                  float alpha = -1, Texel clear = kNone) {
        return S(name, probes, {64, 64, clear}, [=](L& r, Inputs& in) {
            r.initialize(in.w, in.h);
            r.setBlendOption(GL_ONE, GL_ZERO);
            if (alpha >= 0) {
                r.setAlpha(alpha);
            }
            r.setBackgroundTextureID(images[0](in));
            r.setShineTextureID(images[1](in));
            r.setDiamondTextureID(images[2](in));
            r.setAlphaTextureID(images[3](in));
            r.setBlurTextureID(images[4](in));
        });
    }
    static Img topRow(Texel lit) {
        return [=](Inputs& in) { return in(1, 2, [=](int, int y) { return y ? kBlack : lit; }); };
    }
    // The streaks as shine, no diamonds: the hue-shifted zoom along the ring shape, elsewhere
    // the background, opaque.
    static void scene(L& r, Inputs& in) {
        const GLuint shape = ringShape(in), black = in(kBlack);
        KNDrawBrilliantAdvect advect;
        const GLuint shine = streaks(advect, in, shape);
        advect.draw();
        in.target(in.w, in.h);
        r.initialize(in.w, in.h);
        r.setBackgroundTextureID(in(64, 64, gradient, GL_LINEAR));
        r.setShineTextureID(shine);
        r.setDiamondTextureID(black);
        r.setAlphaTextureID(shape);
        r.setBlurTextureID(black);
    }
    static std::vector<S> rows() {
        const Img o = colour(kBlack), solid = colour({255, 0, 0, 255}),
                  half = colour({128, 0, 0, 255});
        const Img faint = colour({1, 0, 0, 255});  // lights every pixel by 1/255
        // Four columns: grey, a mild green, a saturated dark red, full red.
        const Img columns = [](Inputs& in) {
            return in(4, 1,
                      {128, 128, 128, 255, 51, 153, 102, 255, 153, 0, 0, 255, 255, 0, 0, 255});
        };
        // A grey ramp reading about 255 u: grey survives the hue shift.
        const auto v = [](int x) { return byte((x + 0.5) / 256); };
        const TexelAt greys = [=](int x, int) { return Texel{v(x), v(x), v(x), 255}; };
        const Img greyRamp = [=](Inputs& in) { return in(256, 1, greys, GL_LINEAR); };
        auto at = [](int column, Pixel rgba) { return Probe{8 + 16 * column, 32, rgba}; };
        auto grey = [](int x, double u) { return red(x, 32, near(255 * u + 1)); };
        const Img sky = colour({51, 102, 153, 255});
        const Pixel lit{255, 255, 255, 128}, unlit{51, 102, 153, 128};
        const Img u = given(kUnset), z = given(0);
        const Probe nothing{32, 32, {0, 0, 0, 191}, 1};
        return {
            S("KNDrawBrilliantRing", {{0, 0, {-1, -1, -1, 255}, 0}}, {kFrameW, kFrameH, kNone},
              scene),
            // RGB -> HSV -> RGB with the hue 0.027 lower, plus the shine: grey has no hue;
            // (0.2, 0.6, 0.4) -> (0.2, 0.6, 0.335); (0.6, 0, 0): s 1 > 0.85, v 0.6 < 0.7, so s
            // 1.4 and v 0.78 -> (0.78, -0.312, -0.135); (1, 0, 0) -> (1, 0, 0.162).
            ring("shifts the hue and pushes saturated dark colours", {columns, faint, o, solid, o},
                 {at(0, {129, 129, 129, 255}), at(1, {52, 154, 86, 255}), at(2, {200, 0, 0, 255}),
                  at(3, {255, 1, 42, 255})}),
            ring("a blur of 0.502 lifts what went below zero", {columns, faint, o, solid, half},
                 {at(1, {180, 255, 214, 255}), at(2, {255, 49, 95, 255}),
                  at(3, {255, 129, 170, 255})}),
            ring("an alpha map of 0.502 mixes the background half back in",
                 {columns, faint, o, half, o}, {at(1, {52, 154, 95, 255})}),
            // Zoomed by 1 / 0.95: u' = 0.05 + 0.9 u.
            ring("the alpha map chooses the zoomed background", {greyRamp, faint, o, solid, o},
                 {grey(0, 0.05 + 0.9 * 0.5 / 64), grey(63, 0.05 + 0.9 * 63.5 / 64)}),
            ring("alpha map 0 reads the plain coordinates", {greyRamp, faint, o, o, o},
                 {grey(0, 0.5 / 64), grey(63, 63.5 / 64)}),
            // Lit pixels add 1 to the background; the output alpha is the layer's.
            ring("the diamond is read upside down", {sky, o, topRow({0, 0, 255, 255}), o, o},
                 {{32, 8, lit, 1}, {32, 56, unlit, 1}}, 0.5f),
            ring("the shine is read the right way up", {sky, topRow({255, 0, 0, 255}), o, o, o},
                 {{32, 56, lit, 1}, {32, 8, unlit, 1}}, 0.5f),
            ring("the diamond's blue is divided by its alpha",
                 {sky, o, colour({0, 0, 64, 128}), o, o}, {{32, 32, {179, 230, 255, 128}}}, 0.5f),
            // They read black with alpha 1: nothing lit, the black background at the alpha.
            ring("unset textures are bound as they are", {u, u, u, u, u}, {nothing}, 0.75f, kWhite),
            ring("zero textures are bound as they are", {z, z, z, z, z}, {nothing}, 0.75f, kWhite),
        };
    }
};

using Layers =
    ::testing::Types<KNDrawAdvectColorBrush, KNDrawBGAdvectColorBrush, KNDrawMixColorBrush,
                     KNDrawBGAdvectWaterBrush, KNDrawMixWaterBrush, KNDrawRadialColorBrush,
                     KNDrawRadialColorBrushColor, KNDrawRadialWaterBrush, KNDrawBrilliantRadial,
                     KNDrawBrilliantAdvect, KNDrawBrilliantRing>;

template <typename Layer>
class EveryLayerTest : public LayerTest {
  protected:
    std::vector<uint8_t> screen(int w = 64, int h = 64) { return gl().readPixels(0, 0, w, h); }
    const std::vector<uint8_t> mBlank = std::vector<uint8_t>(64 * 64 * 4, 0);
    const Scenario<Layer> mScene = Table<Layer>::rows().front();
};
TYPED_TEST_SUITE(EveryLayerTest, Layers);

TYPED_TEST(EveryLayerTest, DrawsTheHandWorkedPixels) {
    for (const Scenario<TypeParam>& s : Table<TypeParam>::rows()) {
        run(s);
        KNTextureManager::ReleaseInstance();
    }
}

TYPED_TEST(EveryLayerTest, DrawsTheSamePixelsAfterALostContextAndANewInitialize) {
    TypeParam layer;
    const std::vector<uint8_t> before = [&] {
        Inputs in;
        this->mScene.draw(layer, in);
        return this->screen();
    }();
    const auto* pixels = reinterpret_cast<const uint32_t*>(before.data());
    EXPECT_GT(std::set<uint32_t>(pixels, pixels + before.size() / 4).size(), 2u);  // not flat

    this->loseContext();
    KNTextureManager::getInstancePtr()->contextChanged();
    layer.contextChanged();
    glViewport(0, 0, 64, 64);
    clearTo(kNone);
    // Until initialised again it draws with the forgotten program: nothing, and nothing to log.
    LogCapture log;
    layer.draw();
    EXPECT_EQ(log.messages(), std::vector<std::string>{});
    EXPECT_EQ(this->screen(), this->mBlank);
    Inputs in;
    this->mScene.draw(layer, in);
    EXPECT_EQ(this->screen(), before);
}

// Before initialize a draw draws nothing, logging at most one line; sizes without whole pixels
// are logged once per layer and dropped: the layer draws as it did.
TYPED_TEST(EveryLayerTest, DropsDrawsBeforeInitializeAndSizesWithoutWholePixels) {
    TypeParam layer;
    LogCapture log;
    layer.draw();
    EXPECT_LE(log.messages().size(), 1u);
    EXPECT_EQ(this->screen(), this->mBlank);

    const auto [w, h, clear] = this->mScene.target;
    Inputs in(w, h);
    in.target(w, h, clear);
    this->mScene.draw(layer, in);
    const std::vector<uint8_t> before = this->screen(w, h);
    const size_t logged = log.messages().size();
    Table<TypeParam>::bad(layer);
    Table<TypeParam>::bad(layer);
    EXPECT_EQ(log.messages().size(), logged + (!std::is_same_v<TypeParam, KNDrawBrilliantAdvect>));
    clearTo(clear);
    layer.draw();
    EXPECT_EQ(this->screen(w, h), before);
}

TYPED_TEST(EveryLayerTest, LogsNothingOverTwoHundredFrames) {
    TypeParam layer;
    Inputs in;
    this->mScene.draw(layer, in);
    LogCapture log;
    for (int frame = 0; frame < 200; ++frame) {
        layer.draw();
    }
    EXPECT_EQ(log.text().find("qam.vi"), std::string::npos) << log.text();
}

}  // namespace
