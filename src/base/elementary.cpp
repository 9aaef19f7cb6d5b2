#include "base/elementary.h"

namespace orv {

namespace {

#include "base/kernels/elementary_functions.inl"

}  // namespace

double elementaryExp(double x) {
    return expOf(x);
}

double elementaryOneMinusExp(double x) {
    return oneMinusExpOf(x);
}

double elementaryLog(double x) {
    return logOf(x);
}

double elementaryLog10(double x) {
    return log10Of(x);
}

double elementaryExp10(double x) {
    return exp10Of(x);
}

double elementaryAtan(double x) {
    return atanOf(x);
}

double elementaryPow(double x, double y) {
    return powOf(x, y);
}

}  // namespace orv
