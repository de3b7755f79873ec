// The functions of the language over vectors. Every step is one IEEE operation, rounded once and in
// an order that is the same for all vector widths, so that all executors and the scalar forms give
// the same bits. The polynomials in single precision are those of the Cephes library (S. Moshier);
// large arguments of sin, cos and tan are reduced after Payne and Hanek (1983).
//
// Error bounds, tested against double precision: half an ulp for sqrt, 1 ulp for pow, 2 ulp for
// exp, exp2, log, log2 and inversesqrt, 2.5 ulp for asin, acos and atan, 4 ulp for atan of two
// arguments, for the hyperbolic functions and their inverses and for tan from -1.5 to 1.5; sin and
// cos 1.2e-7 absolute for every finite argument.

template <class L>
struct VectorMath {
    using F = typename L::F;
    using I = typename L::I;
    using U = typename L::U;
    using D = typename L::D;

    static F S(float x) { return L::Splat(x); }
    static I N(std::int32_t x) { return L::Splat(x); }
    static U Bits(std::uint32_t x) { return (U)L::Splat((std::int32_t)x); }

    static I Choose(I mask, I a, I b) { return (mask & a) | (~mask & b); }
    static F Choose(I mask, F a, F b) { return (F)Choose(mask, (I)a, (I)b); }
    static F Abs(F x) { return (F)((I)x & N(0x7fffffff)); }
    static I SignBit(F x) { return (I)x & N((std::int32_t)0x80000000u); }
    static F CopySign(F magnitude, F sign) { return (F)((I)Abs(magnitude) | SignBit(sign)); }
    /// A value that has the sign of @p sign, or is 0 and may have lost it.
    static F KeepSign(F value, F sign) { return (F)((I)value | SignBit(sign)); }
    static F FromBits(std::uint32_t x) { return (F)L::Splat((std::int32_t)x); }
    static bool Any(I mask) {
        std::uint32_t words[L::kCount];
        __builtin_memcpy(words, &mask, sizeof words);
        std::uint32_t any = 0;
        for (int i = 0; i < L::kCount; ++i) {
            any |= words[i];
        }
        return any != 0;
    }

    // Rounding.

    static F RoundEven(F x) {
        if constexpr (L::kRounds) {
            return L::RoundEven(x);
        } else {
            // Adding 2^23 leaves no bits behind the point.
            F magic = S(8388608.0f);
            F rounded = (Abs(x) + magic) - magic;
            return Choose(Abs(x) < magic, CopySign(rounded, x), x);
        }
    }
    static F Floor(F x) {
        if constexpr (L::kRounds) {
            return L::Floor(x);
        } else {
            F rounded = RoundEven(x);
            F lower = rounded - Choose(rounded > x, S(1.0f), S(0.0f));
            return Choose(Abs(x) < S(8388608.0f), CopySign(lower, x), x);
        }
    }
    static F Ceil(F x) { return -Floor(-x); }
    static F Trunc(F x) { return CopySign(Floor(Abs(x)), x); }
    static I FloatToInt(F x) {
        I isHigh = (I)(x >= S(2147483648.0f));
        I isInRange = (I)(x >= S(-2147483648.0f)) & ~isHigh;
        I isLow = (I)(x < S(-2147483648.0f));
        I value = L::ToInt(Choose(isInRange, x, S(0.0f)));
        value = Choose(isHigh, N(0x7fffffff), value);
        return Choose(isLow, N((std::int32_t)0x80000000u), value);
    }

    // Exponentials and logarithms.

    /// x * 2^n without overflow on the way, for n from -252 to 254.
    static F ScaleByPowerOfTwo(F x, I n) {
        I half = n >> 1;
        F first = (F)((half + 127) << 23);
        F second = (F)((n - half + 127) << 23);
        return x * first * second;
    }

    /// e^x * 2^shift.
    static F ExpShifted(F x, int shift) {
        F clamped = Choose((I)(x > S(90.0f)), S(90.0f), x);
        clamped = Choose((I)(clamped < S(-110.0f)), S(-110.0f), clamped);
        F whole = RoundEven(clamped * S(1.44269504088896341f));
        F r = clamped - whole * S(0.693359375f);
        r = r - whole * S(-2.12194440e-4f);
        F p = S(1.9875691500e-4f);
        p = p * r + S(1.3981999507e-3f);
        p = p * r + S(8.3334519073e-3f);
        p = p * r + S(4.1665795894e-2f);
        p = p * r + S(1.6666665459e-1f);
        p = p * r + S(5.0000001201e-1f);
        p = p * (r * r) + r + S(1.0f);
        I isNumber = (I)(x == x);
        I n = L::ToInt(Choose(isNumber, whole, S(0.0f))) + shift;
        return ScaleByPowerOfTwo(p, n);
    }
    static F Exp(F x) { return ExpShifted(x, 0); }

    static F Exp2(F x) {
        F clamped = Choose((I)(x > S(130.0f)), S(130.0f), x);
        clamped = Choose((I)(clamped < S(-160.0f)), S(-160.0f), clamped);
        F whole = RoundEven(clamped);
        F r = clamped - whole;
        F p = S(1.535336188319500e-4f);
        p = p * r + S(1.339887440266574e-3f);
        p = p * r + S(9.618437357674640e-3f);
        p = p * r + S(5.550332471162809e-2f);
        p = p * r + S(2.402264791363012e-1f);
        p = p * r + S(6.931472028550421e-1f);
        p = p * r + S(1.0f);
        I isNumber = (I)(x == x);
        return ScaleByPowerOfTwo(p, L::ToInt(Choose(isNumber, whole, S(0.0f))));
    }

    /// x = mantissa * 2^exponent with the mantissa from sqrt(1/2) to sqrt(2), for normal x above 0.
    static F SplitExponent(F x, I& exponent) {
        I bits = (I)x;
        exponent = (I)((U)bits >> 23) - 126;
        F mantissa = (F)((bits & 0x007fffff) | 0x3f000000);
        I isLow = (I)(mantissa < S(0.707106781186547524f));
        exponent += isLow;
        return Choose(isLow, mantissa + mantissa, mantissa);
    }
    /// What log and log2 share: x becomes mantissa - 1, the result is log(1 + x) - x + x*x/2.
    static F LogTail(F x, F square) {
        F p = S(7.0376836292e-2f);
        p = p * x + S(-1.1514610310e-1f);
        p = p * x + S(1.1676998740e-1f);
        p = p * x + S(-1.2420140846e-1f);
        p = p * x + S(1.4249322787e-1f);
        p = p * x + S(-1.6668057665e-1f);
        p = p * x + S(2.0000714765e-1f);
        p = p * x + S(-2.4999993993e-1f);
        p = p * x + S(3.3333331174e-1f);
        return p * x * square;
    }
    /// The logarithms of arguments that are not normal and above 0.
    static F LogSpecial(F x, F result) {
        F infinity = FromBits(0x7f800000u);
        result = Choose((I)(x == infinity), infinity, result);
        result = Choose((I)(x < S(1.17549435e-38f)), -infinity, result);
        result = Choose((I)(x < S(0.0f)), FromBits(0x7fc00000u), result);
        return Choose((I)(x == x), result, x);
    }
    static F Log(F x) {
        I exponent;
        F m = SplitExponent(x, exponent) - S(1.0f);
        F e = L::ToFloat(exponent);
        F square = m * m;
        F y = LogTail(m, square);
        y = y + e * S(-2.12194440e-4f);
        y = y - S(0.5f) * square;
        return LogSpecial(x, (m + y) + e * S(0.693359375f));
    }
    static F Log2(F x) {
        I exponent;
        F m = SplitExponent(x, exponent) - S(1.0f);
        F square = m * m;
        F y = LogTail(m, square) - S(0.5f) * square;
        // log2(e) is 1 and this.
        F tail = S(0.44269504088896340736f);
        F z = y * tail + m * tail;
        z = z + y;
        z = z + m;
        return LogSpecial(x, z + L::ToFloat(exponent));
    }

    // Powers, through double precision so that the error does not grow with the exponent.

    /// log2 of a mantissa from sqrt(1/2) to sqrt(2).
    static D Log2Mantissa(D m) {
        D one = L::SplatDouble(1.0);
        D t = (m - one) / (m + one);
        D z = t * t;
        D p = L::SplatDouble(2.0 / 15.0);
        p = p * z + L::SplatDouble(2.0 / 13.0);
        p = p * z + L::SplatDouble(2.0 / 11.0);
        p = p * z + L::SplatDouble(2.0 / 9.0);
        p = p * z + L::SplatDouble(2.0 / 7.0);
        p = p * z + L::SplatDouble(2.0 / 5.0);
        p = p * z + L::SplatDouble(2.0 / 3.0);
        p = p * z + L::SplatDouble(2.0);
        return p * t * L::SplatDouble(1.44269504088896340736);
    }
    /// 2^f for f from -1/2 to 1/2.
    static D Exp2Fraction(D f) {
        D x = f * L::SplatDouble(0.693147180559945309417);
        D p = L::SplatDouble(1.0 / 362880.0);
        p = p * x + L::SplatDouble(1.0 / 40320.0);
        p = p * x + L::SplatDouble(1.0 / 5040.0);
        p = p * x + L::SplatDouble(1.0 / 720.0);
        p = p * x + L::SplatDouble(1.0 / 120.0);
        p = p * x + L::SplatDouble(1.0 / 24.0);
        p = p * x + L::SplatDouble(1.0 / 6.0);
        p = p * x + L::SplatDouble(0.5);
        p = p * x + L::SplatDouble(1.0);
        return p * x + L::SplatDouble(1.0);
    }
    struct PowerParts {
        D fraction; ///< 2^f
        D whole;
    };
    static PowerParts PowerOf(D mantissa, D exponent, D y) {
        D z = (Log2Mantissa(mantissa) + exponent) * y;
        // What is out of range overflows or vanishes all the same.
        D limit = L::SplatDouble(400.0);
        auto isHigh = z > limit;
        auto isLow = z < -limit;
        z = (D)((isHigh & (decltype(isHigh))limit) | (~isHigh & (decltype(isHigh))z));
        z = (D)((isLow & (decltype(isLow))(-limit)) | (~isLow & (decltype(isLow))z));
        // Adding 1.5 * 2^52 leaves no bits behind the point.
        D magic = L::SplatDouble(6755399441055744.0);
        D whole = (z + magic) - magic;
        return {Exp2Fraction(z - whole), whole};
    }
    /// |x|^y for normal |x| above 0 and finite y.
    static F PowerOfNormal(F x, F y) {
        I exponent;
        F mantissa = SplitExponent(x, exponent);
        F e = L::ToFloat(exponent);
        PowerParts low =
            PowerOf(L::LowToDouble(mantissa), L::LowToDouble(e), L::LowToDouble(y));
        PowerParts high =
            PowerOf(L::HighToDouble(mantissa), L::HighToDouble(e), L::HighToDouble(y));
        F fraction = L::FromDoubles(low.fraction, high.fraction);
        F whole = L::FromDoubles(low.whole, high.whole);
        whole = Choose((I)(whole > S(250.0f)), S(250.0f), whole);
        whole = Choose((I)(whole < S(-250.0f)), S(-250.0f), whole);
        return ScaleByPowerOfTwo(fraction, L::ToInt(whole));
    }
    static F Pow(F x, F y) {
        F infinity = FromBits(0x7f800000u);
        F zero = S(0.0f);
        F one = S(1.0f);
        F a = Abs(x);
        I isZero = (I)(a < S(1.17549435e-38f));
        I isInfinite = (I)(a == infinity);
        I isOrdinary = (I)(x == x) & ~isZero & ~isInfinite & (I)(Abs(y) < infinity);
        F result = PowerOfNormal(Choose(isOrdinary, a, one), Choose(isOrdinary, y, one));

        // 0, infinity and infinite exponents go to 0, 1 or infinity.
        I grows = ((I)(a > one) & (I)(y > zero)) | ((I)(a < one) & (I)(y < zero));
        F edge = Choose(grows, infinity, zero);
        edge = Choose((I)(a == one), one, edge);
        result = Choose(isOrdinary, result, edge);

        // Negative bases have powers for whole exponents.
        F half = y * S(0.5f);
        I isWhole = (I)(Floor(y) == y);
        I isOdd = isWhole & (I)(Floor(half) != half) & (I)(Abs(y) < infinity);
        result = (F)((I)result ^ (isOdd & SignBit(x)));
        I isInvalid = (I)(x < zero) & ~isZero & ~isInfinite & ~isWhole;
        result = Choose(isInvalid, FromBits(0x7fc00000u), result);

        result = Choose((I)(x == x) & (I)(y == y), result, FromBits(0x7fc00000u));
        return Choose((I)(y == zero) | (I)(x == one), one, result);
    }

    // Trigonometry.

    /// x less the nearest multiple of pi / 2, which is quadrant pi / 2 modulo 4, for |x| from 2^13.
    static float ReduceLarge(float x, std::int32_t& quadrant) {
        static const std::uint32_t kTwoOverPi[9] = {0x00000000u, 0xa2f9836eu, 0x4e441529u,
                                                    0xfc2757d1u, 0xf534ddc0u, 0xdb629599u,
                                                    0x3c439041u, 0xfe5163abu, 0xdebbc561u};
        std::uint32_t bits;
        __builtin_memcpy(&bits, &x, sizeof bits);
        std::uint32_t exponent = (bits >> 23) & 255u;
        std::uint64_t mantissa = (bits & 0x007fffffu) | 0x00800000u;
        // The window of 96 bits of 2 / pi whose product with the mantissa starts with 2 bits
        // before the point; what lies ahead of it gives multiples of 4.
        std::uint32_t start = exponent - 120u;
        std::uint32_t word = start / 32u;
        std::uint32_t shift = start % 32u;
        std::uint64_t window[3];
        for (std::uint32_t i = 0; i < 3; ++i) {
            std::uint64_t pair = ((std::uint64_t)kTwoOverPi[word + i] << 32) |
                                 kTwoOverPi[word + i + 1];
            window[i] = (pair << shift) >> 32;
        }
        std::uint64_t product = ((mantissa * window[0]) << 32) + mantissa * window[1] +
                                ((mantissa * window[2]) >> 32);
        std::uint64_t nearest = (product + (1ull << 61)) >> 62;
        double fraction = (double)(std::int64_t)(product - (nearest << 62));
        float r = (float)(fraction * (1.57079632679489661923 / 4611686018427387904.0));
        bool isNegative = (bits >> 31) != 0;
        quadrant = isNegative ? -(std::int32_t)nearest : (std::int32_t)nearest;
        return isNegative ? -r : r;
    }
    static F ReduceAngle(F x, I& quadrant) {
        I isLarge = (I)(Abs(x) >= S(8192.0f));
        I isFinite = (I)(Abs(x) < FromBits(0x7f800000u));
        F small = Choose(isLarge, S(0.0f), x);
        small = Choose(isFinite, small, S(0.0f));
        F whole = RoundEven(small * S(0.636619772367581343f));
        quadrant = L::ToInt(whole);
        F r = small - whole * S(1.5703125f);
        r = r - whole * S(4.837512969970703125e-4f);
        r = r - whole * S(7.5497899548918822e-8f);
        r = Choose((I)(whole == S(0.0f)), small, r); // keeps the sign of 0
        isLarge = isLarge & isFinite;
        if (Any(isLarge)) {
            float values[L::kCount];
            float reduced[L::kCount];
            std::int32_t quadrants[L::kCount];
            std::int32_t large[L::kCount];
            __builtin_memcpy(values, &x, sizeof values);
            __builtin_memcpy(reduced, &r, sizeof reduced);
            __builtin_memcpy(quadrants, &quadrant, sizeof quadrants);
            __builtin_memcpy(large, &isLarge, sizeof large);
            for (int i = 0; i < L::kCount; ++i) {
                if (large[i] != 0) {
                    reduced[i] = ReduceLarge(values[i], quadrants[i]);
                }
            }
            __builtin_memcpy(&r, reduced, sizeof reduced);
            __builtin_memcpy(&quadrant, quadrants, sizeof quadrants);
        }
        return Choose(isFinite, r, FromBits(0x7fc00000u));
    }
    static F SinPolynomial(F r, F z) {
        F p = S(-1.9515295891e-4f);
        p = p * z + S(8.3321608736e-3f);
        p = p * z + S(-1.6666654611e-1f);
        return KeepSign(p * z * r + r, r);
    }
    static F CosPolynomial(F z) {
        F p = S(2.443315711809948e-5f);
        p = p * z + S(-1.388731625493765e-3f);
        p = p * z + S(4.166664568298827e-2f);
        return (p * z * z - S(0.5f) * z) + S(1.0f);
    }
    /// sin(x + shift * pi / 2).
    static F SinShifted(F x, int shift) {
        I quadrant;
        F r = ReduceAngle(x, quadrant);
        quadrant = quadrant + shift;
        F z = r * r;
        I isOdd = (quadrant & 1) != 0;
        F value = Choose(isOdd, CosPolynomial(z), SinPolynomial(r, z));
        return (F)((I)value ^ ((quadrant & 2) << 30));
    }
    static F Sin(F x) { return SinShifted(x, 0); }
    static F Cos(F x) { return SinShifted(x, 1); }
    static F Tan(F x) {
        I quadrant;
        F r = ReduceAngle(x, quadrant);
        F z = r * r;
        F sine = SinPolynomial(r, z);
        F cosine = CosPolynomial(z);
        I isOdd = (quadrant & 1) != 0;
        return Choose(isOdd, -cosine, sine) / Choose(isOdd, sine, cosine);
    }

    /// asin(x) for x from 0 to 1/2, with its square.
    static F AsinPolynomial(F x, F z) {
        F p = S(4.2163199048e-2f);
        p = p * z + S(2.4181311049e-2f);
        p = p * z + S(4.5470025998e-2f);
        p = p * z + S(7.4953002686e-2f);
        p = p * z + S(1.6666752422e-1f);
        return p * z * x + x;
    }
    static F Asin(F x) {
        F a = Abs(x);
        I isHigh = (I)(a > S(0.5f));
        F z = Choose(isHigh, S(0.5f) * (S(1.0f) - a), a * a);
        F base = Choose(isHigh, L::Sqrt(z), a);
        F p = AsinPolynomial(base, z);
        p = Choose(isHigh, S(1.57079632679489662f) - (p + p), p);
        return Choose((I)(a <= S(1.0f)), CopySign(p, x), FromBits(0x7fc00000u));
    }
    static F Acos(F x) {
        F a = Abs(x);
        I isHigh = (I)(a > S(0.5f));
        F z = Choose(isHigh, S(0.5f) * (S(1.0f) - a), a * a);
        F base = Choose(isHigh, L::Sqrt(z), a);
        F p = AsinPolynomial(base, z);
        I isNegative = (I)(x < S(0.0f));
        F high = p + p;
        high = Choose(isNegative, S(3.14159265358979324f) - high, high);
        F low = S(1.57079632679489662f) - CopySign(p, x);
        F result = Choose(isHigh, high, low);
        return Choose((I)(a <= S(1.0f)), result, FromBits(0x7fc00000u));
    }
    static F Atan(F x) {
        F a = Abs(x);
        I isHigh = (I)(a > S(2.414213562373095f));
        I isMiddle = (I)(a > S(0.4142135623730950f)) & ~isHigh;
        F offset = Choose(isHigh, S(1.57079632679489662f), S(0.0f));
        offset = Choose(isMiddle, S(0.785398163397448310f), offset);
        F top = Choose(isHigh, S(-1.0f), a);
        F bottom = Choose(isHigh, a, S(1.0f));
        top = Choose(isMiddle, a - S(1.0f), top);
        bottom = Choose(isMiddle, a + S(1.0f), bottom);
        F t = top / bottom;
        F z = t * t;
        F p = S(8.05374449538e-2f);
        p = p * z + S(-1.38776856032e-1f);
        p = p * z + S(1.99777106478e-1f);
        p = p * z + S(-3.33329491539e-1f);
        return CopySign(offset + (p * z * t + t), x);
    }
    static F Atan2(F y, F x) {
        F ax = Abs(x);
        F ay = Abs(y);
        I isSteep = (I)(ay > ax);
        F most = Choose(isSteep, ay, ax);
        F least = Choose(isSteep, ax, ay);
        F ratio = Choose((I)(most == S(0.0f)), S(0.0f), least / most);
        ratio = Choose((I)(least == FromBits(0x7f800000u)), S(1.0f), ratio);
        F angle = Atan(ratio);
        angle = Choose(isSteep, S(1.57079632679489662f) - angle, angle);
        I isLeft = (I)x >> 31;
        angle = Choose(isLeft, S(3.14159265358979324f) - angle, angle);
        I isNumber = (I)(x == x) & (I)(y == y);
        return Choose(isNumber, CopySign(angle, y), FromBits(0x7fc00000u));
    }

    // Hyperbolic functions.

    static F Sinh(F x) {
        F a = Abs(x);
        F z = x * x;
        F p = S(2.03721912945e-4f);
        p = p * z + S(8.33028376239e-3f);
        p = p * z + S(1.66667160211e-1f);
        p = KeepSign(p * z * x + x, x);
        F half = ExpShifted(a, -1);
        F large = CopySign(half - S(0.25f) / half, x);
        return Choose((I)(a <= S(1.0f)), p, large);
    }
    static F Cosh(F x) {
        F half = ExpShifted(Abs(x), -1);
        return half + S(0.25f) / half;
    }
    static F Tanh(F x) {
        F a = Abs(x);
        F z = x * x;
        F p = S(-5.70498872745e-3f);
        p = p * z + S(2.06390887954e-2f);
        p = p * z + S(-5.37397155531e-2f);
        p = p * z + S(1.33314422036e-1f);
        p = p * z + S(-3.33332819422e-1f);
        p = KeepSign(p * z * x + x, x);
        F large = CopySign(S(1.0f) - S(2.0f) / (Exp(a + a) + S(1.0f)), x);
        I isNumber = (I)(x == x);
        return Choose((I)(a < S(0.625f)), p, Choose(isNumber, large, x));
    }
    static F Asinh(F x) {
        F a = Abs(x);
        F z = x * x;
        F p = S(2.0122003309e-2f);
        p = p * z + S(-4.2699340972e-2f);
        p = p * z + S(7.4847586088e-2f);
        p = p * z + S(-1.6666288134e-1f);
        p = KeepSign(p * z * x + x, x);
        I isHuge = (I)(a > S(1.0e4f));
        F sum = Choose(isHuge, a, a + L::Sqrt(z + S(1.0f)));
        F large = Log(sum) + Choose(isHuge, S(0.693147180559945309f), S(0.0f));
        return Choose((I)(a < S(0.5f)), p, CopySign(large, x));
    }
    static F Acosh(F x) {
        F d = x - S(1.0f);
        F p = S(1.7596881071e-3f);
        p = p * d + S(-7.5272886713e-3f);
        p = p * d + S(2.6454905019e-2f);
        p = p * d + S(-1.1784741703e-1f);
        p = p * d + S(1.4142135263e0f);
        p = p * L::Sqrt(d);
        I isHuge = (I)(x > S(1.0e4f));
        F sum = Choose(isHuge, x, x + L::Sqrt(d * (x + S(1.0f))));
        F large = Log(sum) + Choose(isHuge, S(0.693147180559945309f), S(0.0f));
        F result = Choose((I)(d < S(0.5f)), p, large);
        return Choose((I)(x >= S(1.0f)), result, FromBits(0x7fc00000u));
    }
    static F Atanh(F x) {
        F a = Abs(x);
        F z = x * x;
        F p = S(1.81740078349e-1f);
        p = p * z + S(8.24370301058e-2f);
        p = p * z + S(1.46691431730e-1f);
        p = p * z + S(1.99782164500e-1f);
        p = p * z + S(3.33337300303e-1f);
        p = KeepSign(p * z * x + x, x);
        F large = S(0.5f) * Log((S(1.0f) + x) / (S(1.0f) - x));
        return Choose((I)(a < S(0.5f)), p, large);
    }

    // Random sequences: Owen-scrambled Sobol points by hashing (B. Burley, 2020).

    static U Hash(U x) {
        x = x ^ (x >> 16);
        x = x * 0x7feb352du;
        x = x ^ (x >> 15);
        x = x * 0x846ca68bu;
        return x ^ (x >> 16);
    }
    static U Combine(U seed, U value) { return Hash(seed ^ Hash(value + 0x9e3779b9u)); }
    static U ReverseBits(U x) {
        x = ((x >> 1) & 0x55555555u) | ((x & 0x55555555u) << 1);
        x = ((x >> 2) & 0x33333333u) | ((x & 0x33333333u) << 2);
        x = ((x >> 4) & 0x0f0f0f0fu) | ((x & 0x0f0f0f0fu) << 4);
        x = ((x >> 8) & 0x00ff00ffu) | ((x & 0x00ff00ffu) << 8);
        return (x >> 16) | (x << 16);
    }
    /// Permutes numbers so that each bit depends on those below it alone.
    static U PermuteUpwards(U x, U seed) {
        x = x ^ (x * 0x3d20adeau);
        x = x + seed;
        x = x * ((seed >> 16) | 1u);
        x = x ^ (x * 0x05526c56u);
        return x ^ (x * 0x53a22864u);
    }
    static U Scramble(U x, U seed) { return ReverseBits(PermuteUpwards(ReverseBits(x), seed)); }
    /// The second dimension of Sobol's sequence.
    static U SobolSecond(U index) {
        index = index ^ ((index >> 1) & 0x55555555u);
        index = index ^ ((index >> 2) & 0x33333333u);
        index = index ^ ((index >> 4) & 0x0f0f0f0fu);
        index = index ^ ((index >> 8) & 0x00ff00ffu);
        index = index ^ ((index >> 16) & 0x0000ffffu);
        return ReverseBits(index);
    }
    static F ToUnitInterval(U x) { return L::ToFloat((I)(x >> 8)) * S(1.0f / 16777216.0f); }
    static F RandomX(U seed, U sample, U call) {
        U set = Combine(seed, call);
        U index = Scramble(sample, set);
        return ToUnitInterval(Scramble(ReverseBits(index), Hash(set ^ 0x68bc21ebu)));
    }
    static F RandomY(U seed, U sample, U call) {
        U set = Combine(seed, call);
        U index = Scramble(sample, set);
        return ToUnitInterval(Scramble(SobolSecond(index), Hash(set ^ 0x02e5be93u)));
    }
};
