#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the coefficients of the series and tables behind the distribution functions.

Near-minimax polynomials from Chebyshev sums at 60 digits, in the local variables that the sources
name; run as  distfunseries.py NAME, or without a name for all of them.
"""
import sys

import mpmath as mp

mp.mp.dps = 60


def show(name, values, dimensions=""):
    print(f"constexpr double {name}{dimensions or '[]'} = {{")
    print("    " + ", ".join(repr(float(v)) for v in values) + "};")


def fit(function, low, high, count):
    """`count` coefficients, ascending, in s from -1 to 1 across the interval."""
    middle, half = (low + high) / mp.mpf(2), (high - low) / mp.mpf(2)
    return mp.chebyfit(lambda s: function(middle + half * s), [-1, 1], count)[::-1]


def pieces(name, function, edges, count):
    print(f"constexpr double {name}[{len(edges) - 1}][{count}] = {{")
    for low, high in zip(edges, edges[1:]):
        row = fit(function, mp.mpf(low), mp.mpf(high), count)
        print("    {" + ", ".join(repr(float(v)) for v in row) + "},")
    print("};")


def scaled_erfc(x):
    if x < 100:
        return mp.exp(x * x) * mp.erfc(x)
    terms = [mp.mpf(1)]
    for k in range(1, 30):
        terms.append(-terms[-1] * (2 * k - 1) / (2 * x * x))
    return sum(terms) / (x * mp.sqrt(mp.pi))


def error_function():
    """erf(x)/x - 1 and P(0 < Z < x)/x - 1/2 in x^2; exp(x^2) erfc(x) in x - middle on intervals and, times x, in 1/x^2."""
    def quotient(z):
        return mp.erf(mp.sqrt(z)) / mp.sqrt(z) if z > 0 else 2 / mp.sqrt(mp.pi)

    coefficients = mp.chebyfit(quotient, [mp.mpf("1e-30"), mp.mpf("0.5")], 11)[::-1]
    normal = [c / mp.sqrt(2) ** (2 * i + 3) for i, c in enumerate(coefficients)]
    show("kErf", [coefficients[0] - 1] + coefficients[1:])
    show("kNormal", [normal[0] - mp.mpf("0.5")] + normal[1:])
    quarter = mp.mpf(1) / 4
    print("constexpr double kScaledErfc[16][15] = {")
    for i in range(16):
        middle = quarter + mp.mpf(i) / 2
        row = mp.chebyfit(lambda s: scaled_erfc(middle + s), [-quarter, quarter], 15)[::-1]
        print("    {" + ", ".join(repr(float(v)) for v in row) + "},")
    print("};")
    show("kFarErfc", mp.chebyfit(lambda u: scaled_erfc(1 / mp.sqrt(u)) / mp.sqrt(u),
                                 [mp.mpf("1e-40"), mp.mpf(1) / 64], 9)[::-1])


def stirling():
    """Remainder of Stirling's formula as a function of u = 1/x, 1 <= x <= 8."""
    def remainder(u):
        x = 1 / u
        return mp.loggamma(x) - ((x - mp.mpf(1) / 2) * mp.log(x) - x + mp.log(2 * mp.pi) / 2)

    pieces("kRemainder", remainder, [mp.mpf(i) / 8 for i in range(1, 9)], 10)


def log_gamma():
    """ln gamma(x), over x - 1 and x - 2 next to these zeros, in x - i/2 on i/2 -+ 1/4, i from 1 to
    6 and x >= 0.5; 1 / gamma(1 + x) for 0 <= x <= 1."""
    print("constexpr double kLogGamma[6][18] = {")
    for i in range(1, 7):
        zero = {2: 1, 4: 2}.get(i)

        def value(t):
            x = mp.mpf(i) / 2 + t
            if zero and abs(x - zero) < mp.mpf("1e-25"):
                return mp.psi(0, zero)
            return mp.loggamma(x) / (x - zero if zero else 1)

        low = mp.mpf(0) if i == 1 else -mp.mpf(1) / 4
        row = mp.chebyfit(value, [low, mp.mpf(1) / 4], 18)[::-1]
        print("    {" + ", ".join(repr(float(v)) for v in row) + "},")
    print("};")
    pieces("kReciprocalGamma", lambda x: mp.rgamma(1 + x), [0, mp.mpf(1) / 2, 1], 13)


def logarithms():
    """For i from 85 to 171: c near 128/i of 10 bits, -ln c as the sum of two doubles."""
    print("constexpr LogarithmEntry kLogarithms[] = {")
    for i in range(85, 172):
        c = mp.mpf(round(mp.mpf(128) / i * 512)) / 512
        high = float(-mp.log(c))
        low = float(-mp.log(c) - high)
        print(f"    {{{float(c)!r}, {high!r}, {low!r}}},")
    print("};")
    high = mp.mpf(int(mp.log(2) * 2 ** 42)) / 2 ** 42
    show("kLn2", [high, mp.log(2) - high])


def uniform_gamma():
    """Power series of eta / (lambda - 1), where eta^2/2 = lambda - 1 - ln lambda."""
    count = 46
    # lambda - 1 = sum of c[k] eta^k; from lambda' (lambda - 1) = lambda eta.
    c = [mp.mpf(0), mp.mpf(1)]
    for n in range(2, count + 2):
        # coefficient of eta^n in mu mu' = eta (1 + mu)
        known = sum(c[j] * (n + 1 - j) * c[n + 1 - j] for j in range(2, n))
        c.append((c[n - 1] - known) / (n + 1))
    mu = c[1:count + 1]  # mu / eta
    inverse = [mp.mpf(1)]
    for n in range(1, count):
        inverse.append(-sum(mu[j] * inverse[n - j] for j in range(1, n + 1)))
    show("kUniform", inverse)


PARTS = {"erf": error_function, "stirling": stirling, "loggamma": log_gamma,
         "logarithms": logarithms, "uniform": uniform_gamma}

for part in sys.argv[1:] or PARTS:
    PARTS[part]()
