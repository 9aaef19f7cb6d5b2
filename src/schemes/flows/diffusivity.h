#pragma once

namespace orv {

/// The diffusivity formulas by number; a number that is not listed means PeronaMalik.
enum class FlowKind : int {
    PeronaMalik = 0,
    Variational = 1,
    TotalVariation = 2,
    Weickert4 = 10,
    Weickert2 = 11,
    Weickert3 = 12,
};

/// The diffusivity g(s) for s = |grad u|^2 / K^2.
///
///     PeronaMalik      1 / (1 + s)
///     Variational      1 / sqrt(1 + s)
///     TotalVariation   1 / sqrt(s + 0.0001)
///     Weickert2        1 - exp(-2.33666 / s^2)
///     Weickert3        1 - exp(-2.9183 / s^3)
///     Weickert4        1 - exp(-3.31488 / s^4)
///
/// Units:   none.
/// Domain:  s above 0; for very small s the exponentials give exactly 1.
/// Source:  [PeronaMalik1990], [Weickert1998], [CharbonnierBlancFeraudAubertBarlaud1994],
///          [RudinOsherFatemi1992]
double diffusivity(FlowKind kind, double s);

}  // namespace orv
