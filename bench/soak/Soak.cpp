// Hours of a lock screen in minutes: each sample effect hosted for many frames at a small size,
// as Java drives it (strokes, clear, unlock), with its "bg" replaced every 100 frames and the
// EGL context lost at the start of every 1,000 (so every sample sees a context the host
// rebuilt). Halfway through and at the end of each 1,000 it samples the GL objects alive on the
// context and the process's resident memory. A leak shows as a count that climbs: every GL count
// must stay what it was at the first sample, and memory must end near the first sample after a
// lost context.
//
//   qam-soak [--frames N] [--size WxH] [--rss-slack-kib K] [effect.so ...]
#include <GLES2/gl2.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Common/Platform/HeadlessContext.h"
#include "examples/preview/Resources.h"
#include "examples/preview/Session.h"

namespace {

constexpr int kReplaceEvery = 100;
constexpr int kLoseEvery = 1000;
constexpr int kSampleEvery = 500;  // twice a period: a leak within one shows too
constexpr int kStrokeEvery = 240;  // frames between the starts of two strokes

struct Options {
    int frames = 100000;
    int width = 48;
    int height = 80;
    // Resident memory moves with the allocator's and the driver's caches, and a lost context
    // lives on until the new one is current, so the heap's high-water mark rises once after the
    // first loss: it gets some room. GL objects are counted exactly and get none.
    long rssSlackKib = 4096;
    std::vector<std::string> effects;
};

struct Sample {
    int frame = 0;
    int textures = 0;
    int buffers = 0;
    int programs = 0;
    int framebuffers = 0;
    long rssKib = 0;

    bool sameObjects(const Sample& other) const {
        return textures == other.textures && buffers == other.buffers &&
               programs == other.programs && framebuffers == other.framebuffers;
    }
};

long residentKib() {
    FILE* status = fopen("/proc/self/status", "r");
    long kib = 0;
    char line[256];
    while (status != nullptr && fgets(line, sizeof line, status) != nullptr) {
        if (sscanf(line, "VmRSS: %ld kB", &kib) == 1) {
            break;
        }
    }
    if (status != nullptr) {
        fclose(status);
    }
    return kib;
}

// GLES2 cannot list its objects, so every name up to a bound is asked for. Mesa hands out
// names counting up, so a fresh name of each kind bounds the live ones; the floor covers a
// driver that hands freed names out again.
GLuint nameBound() {
    GLuint texture = 0, buffer = 0, framebuffer = 0;
    glGenTextures(1, &texture);
    glGenBuffers(1, &buffer);
    glGenFramebuffers(1, &framebuffer);
    const GLuint program = glCreateProgram();
    glDeleteTextures(1, &texture);
    glDeleteBuffers(1, &buffer);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteProgram(program);
    GLuint bound = 4096;
    for (GLuint name : {texture, buffer, framebuffer, program}) {
        bound = name > bound ? name : bound;
    }
    return bound;
}

Sample sample(int frame) {
    Sample s;
    s.frame = frame;
    const GLuint bound = nameBound();
    for (GLuint name = 1; name <= bound; ++name) {
        s.textures += glIsTexture(name) == GL_TRUE;
        s.buffers += glIsBuffer(name) == GL_TRUE;
        s.programs += glIsProgram(name) == GL_TRUE;
        s.framebuffers += glIsFramebuffer(name) == GL_TRUE;
    }
    s.rssKib = residentKib();
    return s;
}

// The background, tinted by `step` so that each replacement hands over new pixels.
qam::Image background(const Options& options, int step) {
    qam::Image image = qam::preview::defaultBackground(options.width, options.height);
    for (size_t i = 0; i < image.rgba.size(); i += 4) {
        image.rgba[i] = static_cast<uint8_t>(image.rgba[i] + 16 * (step % 8));
    }
    return image;
}

// A finger drawing a short diagonal stroke now and then, and a clear or an unlock after some.
void feedInput(qam::preview::Session& session, const Options& options, int frame) {
    const int phase = frame % kStrokeEvery;
    const int stroke = frame / kStrokeEvery;
    const int x = options.width / 4 + phase % options.width / 2;
    const int y = options.height / 4 + phase % options.height / 2;
    if (phase == 0) {
        session.touch(x, y, 0);
    } else if (phase < 60) {
        session.touch(x, y, 2);
    } else if (phase == 60) {
        session.touch(x, y, 1);
        if (stroke % 5 == 4) {
            session.showUnlock();
        } else if (stroke % 5 == 2) {
            session.clear();
        }
    }
}

void print(const Sample& s) {
    printf("  %7d %9d %8d %9d %13d %10ld\n", s.frame, s.textures, s.buffers, s.programs,
           s.framebuffers, s.rssKib);
}

bool soak(const std::string& effect, const Options& options, qam::HeadlessContext& gl) {
    printf("%s: %d frames at %dx%d\n", effect.c_str(), options.frames, options.width,
           options.height);
    printf("  %7s %9s %8s %9s %13s %10s\n", "frame", "textures", "buffers", "programs",
           "framebuffers", "RSS KiB");
    std::vector<Sample> samples;
    {
        qam::preview::Session session;
        std::string error;
        if (!session.loadEffect(effect, error)) {
            printf("  %s\n", error.c_str());
            return false;
        }
        // After init, as Java does: init lets go of the pixels of textures loaded before it.
        session.init(options.width, options.height);
        session.loadTexture("bg", background(options, 0));
        for (int frame = 1; frame <= options.frames; ++frame) {
            if (frame % kLoseEvery == 1) {
                gl.replaceContext();
            }
            feedInput(session, options, frame);
            session.draw();
            if (frame % kReplaceEvery == 0) {
                session.loadTexture("bg", background(options, frame / kReplaceEvery));
            }
            if (frame % kSampleEvery == 0) {
                samples.push_back(sample(frame));
                print(samples.back());
            }
        }
    }
    if (samples.size() < 2) {
        printf("  too few frames to compare\n");
        return false;
    }
    const Sample& first = samples.front();
    const Sample& last = samples.back();
    bool objectsFlat = true;
    for (const Sample& each : samples) {
        objectsFlat = objectsFlat && each.sameObjects(first);
    }
    // Memory is judged from the first sample after a lost context was rebuilt: until then the
    // heap has not seen two contexts alive at once, and how far it rises then depends on the
    // machine's load.
    const Sample* settled = &first;
    for (const Sample& each : samples) {
        if (each.frame > kLoseEvery) {
            settled = &each;
            break;
        }
    }
    const bool memoryFlat = last.rssKib <= settled->rssKib + options.rssSlackKib;
    printf("  %s: GL objects %s, resident memory %+ld KiB since frame %d (%s)\n",
           objectsFlat && memoryFlat ? "flat" : "GROWS", objectsFlat ? "equal" : "differ",
           last.rssKib - settled->rssKib, settled->frame,
           memoryFlat ? "within slack" : "over slack");
    return objectsFlat && memoryFlat;
}

bool parse(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const bool hasValue = i + 1 < argc;
        if (strcmp(argv[i], "--frames") == 0 && hasValue) {
            options.frames = atoi(argv[++i]);
        } else if (strcmp(argv[i], "--size") == 0 && hasValue) {
            if (sscanf(argv[++i], "%dx%d", &options.width, &options.height) != 2) {
                return false;
            }
        } else if (strcmp(argv[i], "--rss-slack-kib") == 0 && hasValue) {
            options.rssSlackKib = atol(argv[++i]);
        } else if (argv[i][0] == '-') {
            return false;
        } else {
            options.effects.push_back(argv[i]);
        }
    }
    if (options.effects.empty()) {
        options.effects = {WATERCOLOUR_PATH, SPARKLE_RING_PATH, RIPPLE_PATH};
    }
    return options.frames > 0 && options.width > 0 && options.height > 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        fprintf(stderr,
                "usage: qam-soak [--frames N] [--size WxH] [--rss-slack-kib K] [effect.so ...]\n");
        return 2;
    }
    qam::HeadlessContext gl(options.width, options.height);
    gl.makeCurrent();
    int passed = 0;
    for (const std::string& effect : options.effects) {
        passed += soak(effect, options, gl);
    }
    const int failed = static_cast<int>(options.effects.size()) - passed;
    printf("soak: %d passed, %d failed\n", passed, failed);
    return failed == 0 ? 0 : 1;
}
