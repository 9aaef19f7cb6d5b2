#!/usr/bin/env python3
"""Writes src/base/kernels/elementary_tables.inl, the logarithms that the power starts from.

Usage: make_elementary_tables.py [--check]

The numbers m from 2^-0.5 or so to twice that are cut into 128 parts. Each has a factor 1/c of
at most 10 bits that brings m near 1, and ln c in two doubles, the first with 42 bits after the
point. --check compares instead of writing.
"""

import struct
import sys
from decimal import Decimal, getcontext
from fractions import Fraction
from pathlib import Path

OFFSET = 0x3FE6B00000000000
PARTS = 128
TARGET = Path(__file__).resolve().parent.parent / "src/base/kernels/elementary_tables.inl"


def from_bits(bits):
    return Fraction(struct.unpack("<d", struct.pack("<Q", bits))[0])


def factor(part):
    low = from_bits(OFFSET + (part << 45))
    high = from_bits(OFFSET + ((part + 1) << 45))
    if low < 1 < high:
        return Fraction(1)
    return Fraction(round(2 / (low + high) * 512), 512)


def rows():
    for part in range(PARTS):
        inverse = factor(part)
        exact = -(Decimal(inverse.numerator) / Decimal(inverse.denominator)).ln()
        first = Fraction(int((exact * 2**42).to_integral_value()), 2**42)
        rest = exact - Decimal(first.numerator) / Decimal(first.denominator)
        yield float(inverse), float(first), float(rest)


def text():
    out = ["// Written by scripts/make_elementary_tables.py: 1 / c, and ln c in two parts."]
    for name, column in zip(("kLogInverse", "kLogHigh", "kLogLow"), zip(*rows())):
        out.append("alignas(64) constexpr double %s[%d] = {" % (name, PARTS))
        out += ["    %s," % ", ".join(v.hex() for v in column[i:i + 4])
                for i in range(0, PARTS, 4)]
        out.append("};")
    return "// clang-format off\n" + "\n".join(out) + "\n"


def main():
    getcontext().prec = 80
    if "--check" in sys.argv[1:]:
        if TARGET.read_text() != text():
            sys.exit("make_elementary_tables.py: %s is not what it makes" % TARGET.name)
        return
    TARGET.write_text(text())


if __name__ == "__main__":
    main()
