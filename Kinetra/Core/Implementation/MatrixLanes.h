#pragma once

// Column-at-a-time arithmetic on 4 x 4 column-major float matrices for KNMVPManager.
// The vector paths multiply and add in exactly the order of the scalar formulas and never
// fuse a multiply with an add, so both give the same floats bit for bit.
#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace qam::lanes {

// The scalar formulas are the reference: no multiply-add contraction either (clang would
// contract by default on ARM).
#if defined(__clang__)
#define QAM_NO_FP_CONTRACT _Pragma("clang fp contract(off)")
#else
#define QAM_NO_FP_CONTRACT
#endif

// r[i][j] = a[i][0]*b[0][j] + a[i][1]*b[1][j] + a[i][2]*b[2][j] + a[i][3]*b[3][j], summed
// left to right. Built in a temporary, so r may alias a or b (model x view into the model).
inline void multiplyScalar(float* r, const float* a, const float* b) {
    QAM_NO_FP_CONTRACT
    float product[16];
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            product[4 * i + j] = a[4 * i] * b[j] + a[4 * i + 1] * b[4 + j] +
                                 a[4 * i + 2] * b[8 + j] + a[4 * i + 3] * b[12 + j];
        }
    }
    for (int k = 0; k < 16; ++k) {
        r[k] = product[k];
    }
}

// m[3][j] += m[0][j]*x + m[1][j]*y + m[2][j]*z.
inline void translateScalar(float* m, float x, float y, float z) {
    QAM_NO_FP_CONTRACT
    for (int j = 0; j < 4; ++j) {
        m[12 + j] += m[j] * x + m[4 + j] * y + m[8 + j] * z;
    }
}

// Columns 0, 1, 2 times x, y, z.
inline void scaleScalar(float* m, float x, float y, float z) {
    QAM_NO_FP_CONTRACT
    for (int j = 0; j < 4; ++j) {
        m[j] *= x;
        m[4 + j] *= y;
        m[8 + j] *= z;
    }
}

#if defined(__SSE2__)

// One column of the product: ai[0]*b0 + ai[1]*b1 + ai[2]*b2 + ai[3]*b3, left to right.
inline __m128 productColumn(const float* ai, __m128 b0, __m128 b1, __m128 b2, __m128 b3) {
    const __m128 a = _mm_loadu_ps(ai);
    __m128 sum = _mm_mul_ps(_mm_shuffle_ps(a, a, _MM_SHUFFLE(0, 0, 0, 0)), b0);
    sum = _mm_add_ps(sum, _mm_mul_ps(_mm_shuffle_ps(a, a, _MM_SHUFFLE(1, 1, 1, 1)), b1));
    sum = _mm_add_ps(sum, _mm_mul_ps(_mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 2, 2, 2)), b2));
    return _mm_add_ps(sum, _mm_mul_ps(_mm_shuffle_ps(a, a, _MM_SHUFFLE(3, 3, 3, 3)), b3));
}

// Every operand is in registers before the first store, so r may alias a or b.
inline void multiply(float* r, const float* a, const float* b) {
    const __m128 b0 = _mm_loadu_ps(b);
    const __m128 b1 = _mm_loadu_ps(b + 4);
    const __m128 b2 = _mm_loadu_ps(b + 8);
    const __m128 b3 = _mm_loadu_ps(b + 12);
    const __m128 r0 = productColumn(a, b0, b1, b2, b3);
    const __m128 r1 = productColumn(a + 4, b0, b1, b2, b3);
    const __m128 r2 = productColumn(a + 8, b0, b1, b2, b3);
    const __m128 r3 = productColumn(a + 12, b0, b1, b2, b3);
    _mm_storeu_ps(r, r0);
    _mm_storeu_ps(r + 4, r1);
    _mm_storeu_ps(r + 8, r2);
    _mm_storeu_ps(r + 12, r3);
}

inline void translate(float* m, float x, float y, float z) {
    __m128 sum = _mm_mul_ps(_mm_loadu_ps(m), _mm_set1_ps(x));
    sum = _mm_add_ps(sum, _mm_mul_ps(_mm_loadu_ps(m + 4), _mm_set1_ps(y)));
    sum = _mm_add_ps(sum, _mm_mul_ps(_mm_loadu_ps(m + 8), _mm_set1_ps(z)));
    _mm_storeu_ps(m + 12, _mm_add_ps(_mm_loadu_ps(m + 12), sum));
}

inline void scale(float* m, float x, float y, float z) {
    _mm_storeu_ps(m, _mm_mul_ps(_mm_loadu_ps(m), _mm_set1_ps(x)));
    _mm_storeu_ps(m + 4, _mm_mul_ps(_mm_loadu_ps(m + 4), _mm_set1_ps(y)));
    _mm_storeu_ps(m + 8, _mm_mul_ps(_mm_loadu_ps(m + 8), _mm_set1_ps(z)));
}

#elif defined(__ARM_NEON)

// vmulq/vaddq rather than vmlaq/vfmaq: a fused multiply-add would round differently.
inline float32x4_t productColumn(const float* ai, float32x4_t b0, float32x4_t b1, float32x4_t b2,
                                 float32x4_t b3) {
    float32x4_t sum = vmulq_n_f32(b0, ai[0]);
    sum = vaddq_f32(sum, vmulq_n_f32(b1, ai[1]));
    sum = vaddq_f32(sum, vmulq_n_f32(b2, ai[2]));
    return vaddq_f32(sum, vmulq_n_f32(b3, ai[3]));
}

// Every operand is in registers before the first store, so r may alias a or b.
inline void multiply(float* r, const float* a, const float* b) {
    const float32x4_t b0 = vld1q_f32(b);
    const float32x4_t b1 = vld1q_f32(b + 4);
    const float32x4_t b2 = vld1q_f32(b + 8);
    const float32x4_t b3 = vld1q_f32(b + 12);
    const float32x4_t r0 = productColumn(a, b0, b1, b2, b3);
    const float32x4_t r1 = productColumn(a + 4, b0, b1, b2, b3);
    const float32x4_t r2 = productColumn(a + 8, b0, b1, b2, b3);
    const float32x4_t r3 = productColumn(a + 12, b0, b1, b2, b3);
    vst1q_f32(r, r0);
    vst1q_f32(r + 4, r1);
    vst1q_f32(r + 8, r2);
    vst1q_f32(r + 12, r3);
}

inline void translate(float* m, float x, float y, float z) {
    float32x4_t sum = vmulq_n_f32(vld1q_f32(m), x);
    sum = vaddq_f32(sum, vmulq_n_f32(vld1q_f32(m + 4), y));
    sum = vaddq_f32(sum, vmulq_n_f32(vld1q_f32(m + 8), z));
    vst1q_f32(m + 12, vaddq_f32(vld1q_f32(m + 12), sum));
}

inline void scale(float* m, float x, float y, float z) {
    vst1q_f32(m, vmulq_n_f32(vld1q_f32(m), x));
    vst1q_f32(m + 4, vmulq_n_f32(vld1q_f32(m + 4), y));
    vst1q_f32(m + 8, vmulq_n_f32(vld1q_f32(m + 8), z));
}

#else

inline void multiply(float* r, const float* a, const float* b) {
    multiplyScalar(r, a, b);
}
inline void translate(float* m, float x, float y, float z) {
    translateScalar(m, x, y, z);
}
inline void scale(float* m, float x, float y, float z) {
    scaleScalar(m, x, y, z);
}

#endif

}  // namespace qam::lanes

#undef QAM_NO_FP_CONTRACT
