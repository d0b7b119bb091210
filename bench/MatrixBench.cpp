// KNMVPManager::multiplyMatrix against glm's mat4 product, on the same operands in one run.
#include <benchmark/benchmark.h>

#include <glm/mat4x4.hpp>

#include <cstring>

#include "Kinetra/Core/KNMVPManager.h"

namespace {

using Kinetra::KNMVPManager;

// Two well-conditioned matrices that keep their size when multiplied over and over.
constexpr float kA[16] = {0.6f, 0.8f, 0.0f, 0.0f, -0.8f, 0.6f, 0.0f, 0.0f,
                          0.0f, 0.0f, 1.0f, 0.0f, 0.1f,  0.2f, 0.3f, 1.0f};
constexpr float kB[16] = {1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.8f, -0.6f, 0.0f,
                          0.0f, 0.6f, 0.8f, 0.0f, 0.0f, 0.0f, 0.0f,  1.0f};

void BM_KNMVPManagerMultiply(benchmark::State& state) {
    KNMVPManager::Matrix a;
    KNMVPManager::Matrix b;
    KNMVPManager::Matrix r;
    std::memcpy(a.m, kA, sizeof kA);
    std::memcpy(b.m, kB, sizeof kB);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        KNMVPManager::multiplyMatrix(r, a, b);
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_KNMVPManagerMultiply);

void BM_GlmMat4Product(benchmark::State& state) {
    glm::mat4 a;
    glm::mat4 b;
    std::memcpy(&a[0][0], kA, sizeof kA);
    std::memcpy(&b[0][0], kB, sizeof kB);
    glm::mat4 r;
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        r = b * a;  // the same product as multiplyMatrix(r, a, b)
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_GlmMat4Product);

// A chain where each result feeds the next product, as a layer's MV then MVP does.
void BM_KNMVPManagerChain(benchmark::State& state) {
    KNMVPManager::Matrix a;
    KNMVPManager::Matrix r;
    std::memcpy(a.m, kA, sizeof kA);
    std::memcpy(r.m, kB, sizeof kB);
    for (auto _ : state) {
        KNMVPManager::multiplyMatrix(r, a, r);
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_KNMVPManagerChain);

void BM_GlmMat4Chain(benchmark::State& state) {
    glm::mat4 a;
    glm::mat4 r;
    std::memcpy(&a[0][0], kA, sizeof kA);
    std::memcpy(&r[0][0], kB, sizeof kB);
    for (auto _ : state) {
        r = r * a;
        benchmark::DoNotOptimize(r);
    }
}
BENCHMARK(BM_GlmMat4Chain);

}  // namespace
