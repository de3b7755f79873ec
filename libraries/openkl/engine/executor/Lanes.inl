// Vectors of words and what they can do beyond the language's operators. Included once by each
// executor, inside its namespace.

template <int Bytes>
struct Lanes;

template <>
struct Lanes<16> {
    typedef float F __attribute__((vector_size(16)));
    typedef std::int32_t I __attribute__((vector_size(16)));
    typedef std::uint32_t U __attribute__((vector_size(16)));
    typedef double D __attribute__((vector_size(16)));
    static constexpr int kCount = 4;

    static F Splat(float x) { return (F)_mm_set1_ps(x); }
    static I Splat(std::int32_t x) { return (I)_mm_set1_epi32(x); }
    static D SplatDouble(double x) { return (D)_mm_set1_pd(x); }
    static F Sqrt(F x) { return (F)_mm_sqrt_ps((__m128)x); }
    /// To the nearest integer, ties to even; only for values in the range of integers.
    static I ToNearestInt(F x) { return (I)_mm_cvtps_epi32((__m128)x); }
    /// Towards zero; only for values in the range of integers.
    static I ToInt(F x) { return (I)_mm_cvttps_epi32((__m128)x); }
    static F ToFloat(I x) { return (F)_mm_cvtepi32_ps((__m128i)x); }
#if defined(__SSE4_1__)
    static constexpr bool kRounds = true;
    static F Floor(F x) { return (F)_mm_floor_ps((__m128)x); }
    static F RoundEven(F x) {
        return (F)_mm_round_ps((__m128)x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    }
#else
    static constexpr bool kRounds = false;
    static F Floor(F x) { return x; }
    static F RoundEven(F x) { return x; }
#endif
    static D LowToDouble(F x) { return (D)_mm_cvtps_pd((__m128)x); }
    static D HighToDouble(F x) { return (D)_mm_cvtps_pd(_mm_movehl_ps((__m128)x, (__m128)x)); }
    static F FromDoubles(D low, D high) {
        return (F)_mm_movelh_ps(_mm_cvtpd_ps((__m128d)low), _mm_cvtpd_ps((__m128d)high));
    }
};

#if defined(__AVX2__)
template <>
struct Lanes<32> {
    typedef float F __attribute__((vector_size(32)));
    typedef std::int32_t I __attribute__((vector_size(32)));
    typedef std::uint32_t U __attribute__((vector_size(32)));
    typedef double D __attribute__((vector_size(32)));
    static constexpr int kCount = 8;
    static constexpr bool kRounds = true;

    static F Splat(float x) { return (F)_mm256_set1_ps(x); }
    static I Splat(std::int32_t x) { return (I)_mm256_set1_epi32(x); }
    static D SplatDouble(double x) { return (D)_mm256_set1_pd(x); }
    static F Sqrt(F x) { return (F)_mm256_sqrt_ps((__m256)x); }
    static I ToNearestInt(F x) { return (I)_mm256_cvtps_epi32((__m256)x); }
    static I ToInt(F x) { return (I)_mm256_cvttps_epi32((__m256)x); }
    static F ToFloat(I x) { return (F)_mm256_cvtepi32_ps((__m256i)x); }
    static F Floor(F x) { return (F)_mm256_floor_ps((__m256)x); }
    static F RoundEven(F x) {
        return (F)_mm256_round_ps((__m256)x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    }
    static D LowToDouble(F x) { return (D)_mm256_cvtps_pd(_mm256_castps256_ps128((__m256)x)); }
    static D HighToDouble(F x) { return (D)_mm256_cvtps_pd(_mm256_extractf128_ps((__m256)x, 1)); }
    static F FromDoubles(D low, D high) {
        return (F)_mm256_insertf128_ps(_mm256_castps128_ps256(_mm256_cvtpd_ps((__m256d)low)),
                                       _mm256_cvtpd_ps((__m256d)high), 1);
    }
};
#endif

#if defined(__AVX512F__)
template <>
struct Lanes<64> {
    typedef float F __attribute__((vector_size(64)));
    typedef std::int32_t I __attribute__((vector_size(64)));
    typedef std::uint32_t U __attribute__((vector_size(64)));
    typedef double D __attribute__((vector_size(64)));
    static constexpr int kCount = 16;
    static constexpr bool kRounds = true;

    static F Splat(float x) { return (F)_mm512_set1_ps(x); }
    static I Splat(std::int32_t x) { return (I)_mm512_set1_epi32(x); }
    static D SplatDouble(double x) { return (D)_mm512_set1_pd(x); }
    static F Sqrt(F x) { return (F)_mm512_sqrt_ps((__m512)x); }
    static I ToNearestInt(F x) { return (I)_mm512_cvtps_epi32((__m512)x); }
    static I ToInt(F x) { return (I)_mm512_cvttps_epi32((__m512)x); }
    static F ToFloat(I x) { return (F)_mm512_cvtepi32_ps((__m512i)x); }
    static F Floor(F x) {
        return (F)_mm512_roundscale_ps((__m512)x, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC);
    }
    static F RoundEven(F x) {
        return (F)_mm512_roundscale_ps((__m512)x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    }
    static D LowToDouble(F x) { return (D)_mm512_cvtps_pd(_mm512_castps512_ps256((__m512)x)); }
    static D HighToDouble(F x) { return (D)_mm512_cvtps_pd(_mm512_extractf32x8_ps((__m512)x, 1)); }
    static F FromDoubles(D low, D high) {
        return (F)_mm512_insertf32x8(_mm512_castps256_ps512(_mm512_cvtpd_ps((__m512d)low)),
                                     _mm512_cvtpd_ps((__m512d)high), 1);
    }
};
#endif
