#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the tables of the distribution functions, at least 2,000 points for each function.

Lines "region,argument,...,value", the arguments hexadecimal doubles, so exact, the values from
those very doubles with 60 digits, written to 22. Tables of both tails have two values, the lower
tail first. Run as  distributions.py NAME ...  or without a name for all of them (some minutes).
"""
import os
import re
import sys

import mpmath as mp

from reference import random

mp.mp.dps = 60
COUNT = 2000
LEAST = mp.mpf("4e-308")  # smaller values are 0 in the library
ONE = mp.mpf(1)


def hexadecimal(x):
    return re.sub(r"\.?0+p", "p", float(x).hex())


def write(name, title, rows):
    """rows: (region, arguments, values)."""
    folder = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(folder, f"{name}.csv"), "w", encoding="ascii") as file:
        file.write(f"# {title}; written by distributions.py\n")
        file.write("# python3-mpmath, 60 digits; region,argument,...,value\n")
        for region, arguments, values in rows:
            cells = [region, *map(hexadecimal, arguments), *(mp.nstr(v, 22) for v in values)]
            file.write(",".join(cells) + "\n")
    print(name, len(rows), "rows")


def collect(regions, draw, count=None):
    """Draws until each region has its share of COUNT points; draw may answer None."""
    rows = []
    share = (count or COUNT) // len(regions) + 1
    for region, *settings in regions:
        found = 0
        while found < share:
            drawn = draw(*settings)
            if drawn is None:
                continue
            arguments, values = drawn
            if all(v != 0 and abs(v) < LEAST for v in values) or any(
                    v == 0 or abs(v) < LEAST for v in values[:1]):
                continue
            rows.append((region, arguments, values))
            found += 1
    return rows


def short(x):
    """x rounded to 20 bits, so that it takes less room in the table."""
    mantissa, exponent = mp.frexp(x)
    return float(mp.ldexp(round(mp.ldexp(mantissa, 20)), exponent - 20))


def log_between(low, high):
    return 10.0 ** random.uniform(low, high)


# Normal distribution.

def normal():
    spans = [("near 0", -300, -3), ("0.001 to 1", -3, 0), ("1 to 6", 0, 0.778)]

    def draw_erf(low, high):
        x = random.choice((-1, 1)) * log_between(low, high)
        return (x,), (mp.erf(x),)

    write("derf", "derf(x)", collect(spans, draw_erf))

    def draw_erfc(low, high):
        x = random.uniform(low, high)
        return (x,), (mp.erfc(x),)

    tails = [("below 0", -6, 0), ("0 to 1", 0, 1), ("1 to 6", 1, 6), ("6 to 26.5", 6, 26.5)]
    write("derfc", "derfc(x)", collect(tails, draw_erfc))

    def draw_normal(low, high):
        x = random.uniform(low, high)
        return (x,), (mp.erfc(-mp.mpf(x) / mp.sqrt(2)) / 2,)

    spans = [("-37.5 to -8", -37.5, -8), ("-8 to -1", -8, -1), ("-1 to 1", -1, 1), ("1 to 8", 1, 8)]
    write("prbnrm", "prbnrm(x)", collect(spans, draw_normal))

    def draw_quantile(low, high, is_log):
        p = log_between(low, high) if is_log else random.uniform(low, high)
        x = mp.mpf(0)
        if p != 0.5:
            r = mp.sqrt(-2 * mp.log(min(p, 1 - p)))
            # Newton's steps on the logarithm of the smaller tail, of a size > 0.
            tail = min(mp.mpf(p), 1 - mp.mpf(p))
            size = r * mp.mpf("0.9")
            for _ in range(60):
                upper = mp.erfc(size / mp.sqrt(2)) / 2
                density = mp.exp(-size * size / 2) / mp.sqrt(2 * mp.pi)
                step = mp.log(upper / tail) * upper / density
                size += step
                if abs(step) < mp.mpf("1e-45"):
                    break
            x = -size if p < 0.5 else size
        return (p,), (x,)

    spans = [("1e-300 to 1e-16", -300, -16, True), ("1e-16 to 0.05", -16, -1.3, True),
             ("0.05 to 0.95", 0.05, 0.95, False), ("0.95 to 1", 0.95, 1, False)]
    write("probit", "probit(p)", collect(spans, draw_quantile))


# Gamma function.

def gammas():
    def draw(low, high):
        x = log_between(low, high)
        return (x,), (mp.loggamma(x),)

    def draw_near(zero):
        x = zero + random.choice((-1, 1)) * log_between(-15, -1)
        return None if x == zero else ((x,), (mp.loggamma(x),))

    rows = collect([("below 0.5", -300, -0.301), ("0.5 to 8", -0.301, 0.903),
                    ("8 to 1000", 0.903, 3), ("above 1000", 3, 300)], draw, 1600)
    rows += collect([("near 1", 1.0), ("near 2", 2.0)], draw_near, 800)
    write("dnlgam", "dnlgam(x)", rows)

    def draw_remainder(low, high):
        x = log_between(low, high)
        y = mp.mpf(x)
        mp.mp.dps = 60 + max(0, int(2 * high))
        value = mp.loggamma(y) - ((y - ONE / 2) * mp.log(y) - y + mp.log(2 * mp.pi) / 2)
        mp.mp.dps = 60
        return (x,), (value,)

    write("cbtaux", "cbtaux(x)", collect(
        [("below 1", -10, 0), ("1 to 8", 0, 0.903), ("above 8", 0.903, 15)], draw_remainder))

    def draw_binomial(low, high, is_small):
        n = int(log_between(low, high))
        k = random.randint(1, min(n, 20)) if is_small else random.randint(1, n)
        if k >= n:
            return None
        value = mp.loggamma(n + 1) - mp.loggamma(k + 1) - mp.loggamma(n - k + 1)
        return (n, k), (value,)

    write("dnlbnc", "dnlbnc(n, k)", collect(
        [("n to 1000", 0.5, 3, False), ("n to 1e9", 3, 9, False), ("k to 20", 0.5, 9, True)],
        draw_binomial))


# Incomplete gamma ratio.

def remainder(a):
    """ln gamma(a) less its main part, without cancellation for large a."""
    if a > 1000:
        return mp.nsum(lambda k: mp.bernoulli(2 * int(k)) / (2 * k * (2 * k - 1) * a ** (2 * k - 1)),
                       [1, 18])
    return mp.loggamma(a) - ((a - ONE / 2) * mp.log(a) - a + mp.log(2 * mp.pi) / 2)


def deviance(a, m):
    """a ln(m/a) - (m - a)."""
    mu = (m - a) / a
    mp.mp.dps = 120
    value = a * (mp.log1p(mu) - mu)
    mp.mp.dps = 60
    return value


def gamma_density(a, x):
    if a < 20:
        return mp.exp(a * mp.log(x) - x) / mp.gamma(a)
    return mp.sqrt(a / (2 * mp.pi)) * mp.exp(deviance(a, x) - remainder(a))


def gamma_tails(x, a):
    density = gamma_density(a, x)
    if density == 0 or density < mp.mpf("1e-320"):
        return None
    limit = mp.mpf("1e-45")
    if x < a + 1 or x < 2:
        total = term = ONE
        n = a
        while term > total * limit:
            n += 1
            term *= x / n
            total += term
        lower = density / a * total
        return lower, 1 - lower
    upper = density / lentz(
        (( -k * (k - a), x - a + 1 + 2 * k) for k in counting()), x + 1 - a, limit)
    return 1 - upper, upper


def counting():
    k = 1
    while True:
        yield k
        k += 1


def lentz(terms, first, limit):
    """The continued fraction first + a1/(b1 + a2/(b2 + ...)) for terms (a, b)."""
    value = c = first
    d = mp.mpf(0)
    for above, below in terms:
        d = 1 / (below + above * d)
        c = below + above / c
        value *= c * d
        if abs(c * d - 1) < limit:
            return value
    return value


def large_gamma_tails(x, a):
    """By quadrature of the density in units of the standard deviation."""
    root = mp.sqrt(a)
    z = (x - a) / root
    scale = mp.exp(-remainder(a)) / mp.sqrt(2 * mp.pi)

    def integrand(t):
        mu = t / root
        # The series is cut below 1e-30 of its first term; |mu| is at most 1e-3 here.
        d = a * (-mu ** 2 / 2 + mu ** 3 / 3 - mu ** 4 / 4 + mu ** 5 / 5 - mu ** 6 / 6 + mu ** 7 / 7
                 - mu ** 8 / 8 + mu ** 9 / 9 - mu ** 10 / 10 + mu ** 11 / 11 - mu ** 12 / 12)
        return mp.exp(d + z * z / 2) / (1 + mu)

    mp.mp.dps = 34
    direction = 1 if z > 0 else -1
    decay = abs(z) + 1
    edges = [z + direction * s / decay for s in (0, 2, 5, 10, 20, 40, 90)]
    tail = abs(mp.quad(integrand, edges)) * scale * mp.exp(-z * z / 2)
    mp.mp.dps = 60
    return (1 - tail, tail) if z > 0 else (tail, 1 - tail)


def draw_gamma_point(low, high):
    a = mp.mpf(short(log_between(low, high)))
    kind = random.random()
    if kind < 0.5 or a < 0.5:
        if a < 0.5 and kind < 0.7:
            x = log_between(-6, 2)
        else:
            z = random.uniform(-8, 8)
            x = a * max(mp.mpf("0.01"), 1 - 1 / (9 * a) + z / (3 * mp.sqrt(a))) ** 3
    elif kind < 0.75:
        x = a * log_between(-1.5, 1)
    else:
        z = random.uniform(-37, 37)
        x = a + z * mp.sqrt(a) + (z * z / 3 if z > 0 else 0)
    return (mp.mpf(float(x)), a) if x > 1e-280 else None


def incomplete_gamma():
    def draw(low, high):
        point = draw_gamma_point(low, high)
        tails = gamma_tails(*point) if point else None
        return tails and (point, tails)

    def draw_large(low, high):
        a = mp.mpf(short(log_between(low, high)))
        x = mp.mpf(float(a + random.uniform(-37, 37) * mp.sqrt(a)))
        return (x, a), large_gamma_tails(x, a)

    rows = collect([("a below 1", -8, 0), ("a 1 to 20", 0, 1.3), ("a 20 to 1000", 1.3, 3)], draw, 2100)
    rows += collect([("a 1000 to 1e5", 3, 5)], draw, 300)
    rows += collect([("a 1e9 to 1e15", 9, 15)], draw_large, 150)
    write("gammad", "gammad(x, a): lower and upper tail", rows)


# Incomplete beta ratio.

def beta_density(a, b, x, y):
    n = a + b
    if min(a, b) > 20:
        return mp.sqrt(a * b / (2 * mp.pi * n)) * mp.exp(
            deviance(a, n * x) + deviance(b, n * y) + remainder(n) - remainder(a) - remainder(b))
    return mp.exp(a * mp.log(x) + b * mp.log(y) - mp.loggamma(a) - mp.loggamma(b) + mp.loggamma(n))


def beta_fraction_terms(a, b, x):
    for m in counting():
        yield m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m)), ONE
        yield -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1)), ONE


def beta_tails(a, b, x, y):
    density = beta_density(a, b, x, y)
    if density < mp.mpf("1e-330"):
        return None
    if x < (a + 1) / (a + b + 2):
        first = 1 - (a + b) * x / (a + 1)
        # 1/(1 + d1/(1 + ...)) with the first element taken in.
        value = density / a / (1 + d1_over(a, b, x))
        return value, 1 - value
    value = density / b / (1 + d1_over(b, a, y))
    return 1 - value, value


def d1_over(a, b, x):
    """d1/(1 + d2/(1 + ...)) of the continued fraction, DLMF 8.17.22."""
    limit = mp.mpf("1e-45")
    tail = lentz(beta_fraction_terms(a, b, x), ONE, limit)
    return -(a + b) * x / (a + 1) / tail


def draw_shape(low, high):
    return mp.mpf(short(log_between(low, high)))


def draw_odds(a, b):
    """x/(1-x) all over the distribution."""
    kind = random.random()
    if kind < 0.25 or min(a, b) < 0.3:
        return log_between(-4, 4)
    z = random.uniform(-8, 8) if kind < 0.7 else random.uniform(-37, 37)
    return float(a / b * mp.exp(z * mp.sqrt(1 / a + 1 / b)))


SHAPES = [("both below 1", -6, 0, -6, 0), ("one below 1", -6, 0, 0, 4), ("1 to 20", 0, 1.3, 0, 1.3),
          ("one 1 to 20", 0, 1.3, 1.3, 5), ("20 to 1e5", 1.3, 5, 1.3, 5)]


def shapes(low1, high1, low2, high2):
    pair = [draw_shape(low1, high1), draw_shape(low2, high2)]
    random.shuffle(pair)
    return pair


def incomplete_beta():
    def draw(*spans):
        a, b = shapes(*spans)
        odds = draw_odds(a, b)
        x = mp.mpf(float(odds / (1 + odds)))
        if not 1e-280 < x < 1:
            return None
        tails = beta_tails(a, b, x, 1 - x)
        return tails and ((x, a, b), tails)

    write("cdfbet", "cdfbet(x, a, b): lower and upper tail", collect(SHAPES, draw, 2000))


def t_tail(t, df):
    """Lower tail of -|t|."""
    square = t * t
    tails = beta_tails(df / 2, ONE / 2, df / (df + square), square / (df + square))
    return tails and tails[0] / 2


def student():
    def draw(low, high, is_whole, far):
        df = draw_shape(low, high)
        if is_whole:
            df = mp.mpf(int(df))
        t = log_between(0, 60) if random.random() < far else random.uniform(0, 10)
        if random.random() < 0.1:
            t = log_between(-10, 0)
        t = mp.mpf(random.choice((-1, 1)) * t)
        tail = t_tail(t, df)
        if tail is None:
            return None
        return (t, df), ((tail, 1 - tail) if t < 0 else (1 - tail, tail))

    write("cdft", "CdfT(t, df): lower and upper tail", collect(
        [("df below 1", -2, 0, False, 0.3), ("whole df to 100", 0, 2, True, 0.2),
         ("df 1 to 100", 0, 2, False, 0.2), ("df 100 to 1e5", 2, 5, False, 0.0)], draw))


def fisher():
    def draw(*spans):
        d1, d2 = (2 * d for d in shapes(*spans))
        f = mp.mpf(float(draw_odds(d1 / 2, d2 / 2) * d2 / d1))
        both = d1 * f + d2
        tails = beta_tails(d1 / 2, d2 / 2, d1 * f / both, d2 / both)
        return tails and ((f, d1, d2), tails)

    write("cdff", "CdfF(f, d1, d2): lower and upper tail", collect(SHAPES[1:], draw))


def binomials():
    def point(low, high):
        n = mp.mpf(int(log_between(low, high)))
        p = mp.mpf(float(random.uniform(0, 1) if random.random() < 0.7 else log_between(-8, 0)))
        sd = mp.sqrt(n * p * (1 - p))
        k = mp.floor(n * p + sd * random.uniform(-9, 9) + random.uniform(0, 3))
        return (k, n, p) if 0 <= k < n and 0 < p < 1 else None

    def draw_cdf(low, high):
        drawn = point(low, high)
        if drawn is None:
            return None
        k, n, p = drawn
        tails = beta_tails(n - k, k + 1, 1 - p, p)
        return tails and (drawn, tails[:1])

    def draw_pdf(low, high):
        drawn = point(low, high)
        if drawn is None:
            return None
        k, n, p = drawn
        return drawn, (mp.binomial(n, k) * p ** k * (1 - p) ** (n - k),)

    spans = [("n to 30", 0.3, 1.5), ("n 30 to 1000", 1.5, 3), ("n 1000 to 1e6", 3, 6)]
    write("cdfbin", "CdfBin(k, n, p)", collect(spans, draw_cdf))
    write("pdfbin", "PdfBin(k, n, p)", collect(spans, draw_pdf))


def hypergeometric():
    def draw(low, high):
        total = int(log_between(low, high))
        marked, drawn = random.randint(1, total), random.randint(1, total)
        least, most = max(0, drawn - total + marked), min(marked, drawn)
        mean = marked * drawn / total
        sd = (mean * (1 - marked / total) * (1 - drawn / total)) ** 0.5
        x = int(mean + sd * random.uniform(-9, 9))
        if not least <= x < most:
            return None
        term = mp.binomial(marked, x) * mp.binomial(total - marked, drawn - x) / mp.binomial(
            total, drawn)
        value = mp.mpf(0)
        for k in range(x, least - 1, -1):
            value += term
            if term < value * mp.mpf("1e-40") and k < mean:
                break
            term = term * k * (total - marked - drawn + k) / (
                mp.mpf(marked - k + 1) * (drawn - k + 1))
        return (x, total, marked, drawn), (value,)

    write("cdfhyper", "CDFHyper(x, N, K, n)", collect(
        [("N to 50", 0.5, 1.7), ("N 50 to 1000", 1.7, 3), ("N 1000 to 1e5", 3, 5)], draw))


# Inverses: a point is drawn, its lower tail rounded, and the point moved to that tail by Newton's
# steps in its logarithm.

def refine(point, p, tails, density):
    for _ in range(4):
        lower, upper = tails(point)
        rate = density(point)
        if p <= 0.5:
            step = mp.log(p / lower) * lower / rate
        else:
            step = mp.log(upper / (1 - p)) * upper / rate
        point *= mp.exp(step)
        if abs(step) < mp.mpf("1e-20"):
            break
    return point


def rounded(lower):
    p = mp.mpf(float(lower))
    return p if mp.mpf("1e-300") < p < 1 - mp.mpf("1e-9") else None


def inverses():
    def draw_chi(low, high):
        point = draw_gamma_point(low, high)
        tails = gamma_tails(*point) if point else None
        p = rounded(tails[0]) if tails else None
        if p is None or point[0] < mp.mpf("1e-250"):
            return None
        a = point[1]
        x = refine(point[0], p, lambda x: gamma_tails(x, a), lambda x: gamma_density(a, x))
        return (p, 2 * a), (2 * x,)

    write("idfchi", "IdfChi(p, df)", collect(
        [("df 0.2 to 2", -1, 0), ("df 2 to 40", 0, 1.3), ("df 40 to 2000", 1.3, 3)], draw_chi))

    def odds_of(a, b):
        odds = mp.mpf(draw_odds(a, b))
        both = lambda r: beta_tails(a, b, r / (1 + r), 1 / (1 + r))
        tails = both(odds)
        p = rounded(tails[0]) if tails else None
        if p is None:
            return None
        return p, refine(odds, p, both, lambda r: beta_density(a, b, r / (1 + r), 1 / (1 + r)))

    spans = [("one below 1", -1, 0, 0, 3), ("1 to 20", 0, 1.3, 0, 1.3),
             ("one 1 to 20", 0, 1.3, 1.3, 4), ("20 to 1e4", 1.3, 4, 1.3, 4)]

    def draw_f(*spans):
        a, b = shapes(*spans)
        found = odds_of(a, b)
        return found and ((found[0], 2 * a, 2 * b), (found[1] * b / a,))

    write("idff", "IdfF(p, d1, d2)", collect(spans, draw_f))

    def draw_beta(*spans):
        a, b = shapes(*spans)
        found = odds_of(a, b)
        return found and ((found[0], a, b), (found[1] / (1 + found[1]),))

    write("idfbeta", "IdfBeta(p, a, b)", collect(spans, draw_beta))

    def draw_t(low, high):
        df = draw_shape(low, high)
        size = mp.mpf(log_between(0, 30) if random.random() < 0.2 else random.uniform(0.01, 8))
        tail = t_tail(size, df)
        p = rounded(tail) if tail else None
        if p is None:
            return None

        def density(t):
            square = t * t
            return beta_density(df / 2, ONE / 2, df / (df + square), square / (df + square))

        # The tail falls as size grows.
        size = refine(size, p, lambda t: (t_tail(t, df), ONE), lambda t: -density(t))
        return (p, df), (-size,)

    write("idft", "IdfT(p, df)", collect(
        [("df 0.2 to 2", -0.7, 0.3), ("df 2 to 100", 0.3, 2), ("df 100 to 1e4", 2, 4)], draw_t))


PARTS = {"normal": normal, "gammas": gammas, "gamma": incomplete_gamma, "beta": incomplete_beta,
         "student": student, "fisher": fisher, "binomials": binomials,
         "hypergeometric": hypergeometric, "inverses": inverses}

if __name__ == "__main__":
    for part in sys.argv[1:] or PARTS:
        random.seed(part)
        PARTS[part]()
