// The host's per-frame and per-texture costs: ARGB to RGBA conversion against memcpy, the CPU
// time of draw() around an effect that does nothing, and heap allocations per frame.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Common/Native/Host.h"
#include "Common/Native/PixelConversion.h"
#include "Common/Platform/HeadlessContext.h"

namespace {

std::atomic<long> gAllocations{0};

// loadTexture's conversion of a screen-sized ARGB image, written back into Java's array and
// copied to the texture's buffer, against memcpy of the same bytes, timed in turn within each
// iteration so both see the same machine. The time is the conversion's; "of_memcpy" is its
// throughput as a share of memcpy's.
void BM_ArgbToRgba(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    const size_t count = static_cast<size_t>(state.range(0) * state.range(1));
    std::vector<uint32_t> pixels(count, 0x80112233u), rgba(count), copy(count);
    Clock::duration converting{}, copying{};
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        qam::host::argbToRgba(pixels.data(), count, false, rgba.data());
        benchmark::ClobberMemory();
        const Clock::time_point converted = Clock::now();
        memcpy(copy.data(), pixels.data(), count * 4);
        benchmark::ClobberMemory();
        const Clock::time_point copied = Clock::now();
        converting += converted - start;
        copying += copied - converted;
        state.SetIterationTime(std::chrono::duration<double>(converted - start).count());
    }
    state.SetBytesProcessed(state.iterations() * int64_t(count * 4));
    state.counters["of_memcpy"] = std::chrono::duration<double>(copying).count() /
                                  std::chrono::duration<double>(converting).count();
}
BENCHMARK(BM_ArgbToRgba)
    ->Args({1080, 1920})
    ->Args({1440, 3200})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

struct IdleAnimations {
    vi::AnimationManager<IdleAnimations> mAnimations;
};

// An effect whose hooks do nothing.
class IdleEffect : private IdleAnimations, public vi::Effect {
  public:
    IdleEffect() : Effect(&mAnimations) { makeCurrent(); }
    void initPortrait() override {}
    void initLandscape() override {}
    bool draw() override { return false; }
};

qam::HeadlessContext& context() {
    static qam::HeadlessContext* headless = new qam::HeadlessContext(64, 64);
    return *headless;
}

// One frame: `touches` queued moves, then draw().
void BM_Draw(benchmark::State& state) {
    context().makeCurrent();
    vi::HostInstance slot;
    slot.set(new IdleEffect());
    vi::Host::init(slot, 64, 64, false);
    const int touches = static_cast<int>(state.range(0));
    for (int i = 0; i < 3; ++i) {  // settle the queue's storage
        for (int t = 0; t < touches; ++t) {
            vi::Host::onTouch(slot, t, t, 2);
        }
        vi::Host::draw(slot);
    }
    const long before = gAllocations.load();
    for (auto _ : state) {
        for (int t = 0; t < touches; ++t) {
            vi::Host::onTouch(slot, t, t, 2);
        }
        benchmark::DoNotOptimize(vi::Host::draw(slot));
    }
    state.counters["allocations/frame"] =
        double(gAllocations.load() - before) / double(state.iterations());
    vi::Host::destroy(slot);
}
BENCHMARK(BM_Draw)->Arg(0)->Arg(64);

}  // namespace

// Counts every allocation made through operator new in this program. GCC takes the free() in
// a replacement operator delete for a mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(size_t size) {
    ++gAllocations;
    if (void* memory = malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    free(memory);
}
