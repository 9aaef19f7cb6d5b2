// The arc tangent.

/// The arc tangent: atan x = atan b + atan t, t = (x - b) / (1 + x b), for b = 0, 1/2, 1, 3/2
/// and infinity; then an odd minimax polynomial in t (relative error 2^-57).
inline double atanOf(double x) {
    const double a = __builtin_fabs(x);
    double b = a > 0.4375 ? 0.5 : 0.0;
    double high = a > 0.4375 ? 0x1.dac670561bb4fp-2 : 0.0;
    double low = a > 0.4375 ? 0x1.a2b7f222f65e2p-56 : 0.0;
    b = a > 0.6875 ? 1.0 : b;
    high = a > 0.6875 ? 0x1.921fb54442d18p-1 : high;
    low = a > 0.6875 ? 0x1.1a62633145c07p-55 : low;
    b = a > 1.1875 ? 1.5 : b;
    high = a > 1.1875 ? 0x1.f730bd281f69bp-1 : high;
    low = a > 1.1875 ? 0x1.007887af0cbbdp-56 : low;
    const bool steep = a > 2.4375;
    high = steep ? 0x1.921fb54442d18p+0 : high;
    low = steep ? 0x1.1a62633145c07p-54 : low;
    const double over = steep ? -1.0 : a - b;
    const double under = steep ? a : 1.0 + a * b;

    const double t = over / under;
    const double z = t * t;
    const double z2 = z * z;
    const double z4 = z2 * z2;
    const double first = (0x1.555555555550cp-2 + z * -0x1.999999998ea97p-3) +
                         z2 * (0x1.2492492001efep-3 + z * -0x1.c71c6fe0086dcp-4);
    const double second = (0x1.745cdc1d9a26cp-4 + z * -0x1.3b0f27898652cp-4) +
                          z2 * (0x1.10d64707865d4p-4 + z * -0x1.dde10a0791dd0p-5);
    const double third =
        (0x1.97ad6772d5a5fp-5 + z * -0x1.2b3386b9b6e8dp-5) + z2 * 0x1.0ab28e5591887p-6;
    const double s = z * (first + z4 * (second + z4 * third));
    const double y = high + (t - (t * s - low));
    const ElementaryBits sign = bitsOf(x) & 0x8000000000000000ULL;
    return orNan(x == x, fromBits(bitsOf(y) | sign));
}
