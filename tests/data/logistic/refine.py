#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Refines the expected values of this folder to 25 digits.

Reads the data sets as doubles, finds the maximum of the likelihood by Newton steps with 40 digits
(Debian's python3-mpmath), stops with an error where R's values (references.R) are off by more than
1e-9 of the largest value of their kind, and writes the refined values in their place. What is below
1e-25 of the largest is 0 but for rounding, and becomes 0.
"""

import itertools
import pathlib

import mpmath
from mpmath import mpf

mpmath.mp.dps = 40
FOLDER = pathlib.Path(__file__).parent
DIGITS = 25
PER_KIND = ("estimate", "covariance", "probability")


def read(path):
    lines = path.read_text().splitlines()
    comments = [line for line in lines if line.startswith("#")]
    head = dict(line[2:].split(": ", 1) for line in comments if ": " in line)
    return comments, head, [line.split(",") for line in lines if not line.startswith("#")]


class Data:
    def __init__(self, path):
        _, self.head, lines = read(path)
        columns = [cell.split(":") for cell in lines[0]]
        self.position = {column[0]: i for i, column in enumerate(columns)}
        self.factors = [c[0] for c in columns if c[1] == "factor"]
        role = {column[1]: i for i, column in enumerate(columns)}
        self.levels = next(v.split(" = ")[1].split(", ") for v in [
            line[len("# Levels: "):] for line in path.read_text().splitlines()
            if line.startswith("# Levels: " + columns[0][0])])
        rows = [[float(cell) for cell in line] for line in lines[1:]]
        weight = role.get("frequency")
        self.kept = [i for i, row in enumerate(rows) if weight is None or row[weight] > 0]
        self.rows = [rows[i] for i in self.kept]
        self.weights = [mpf(1) if weight is None else mpf(row[weight]) for row in self.rows]
        self.y = [int(row[0]) for row in self.rows]

    def categories(self):
        seen = sorted(set(self.y))
        wanted = self.head["Reference"]
        reference = {"first": seen[0], "last": seen[-1]}.get(wanted)
        if reference is None:
            reference = self.levels.index(wanted)
        return [c for c in seen if c != reference] + [reference]

    def design(self):
        columns = [[mpf(1)] * len(self.rows)] if self.head["Intercept"] == "yes" else []
        for effect in self.head["Effects"].split("; "):
            terms = effect.split("*")
            product = [mpf(1)] * len(self.rows)
            for x in (t for t in terms if t not in self.factors):
                product = [a * mpf(row[self.position[x]]) for a, row in zip(product, self.rows)]
            used = [self.position[f] for f in self.factors if f in terms]
            cells = [tuple(row[f] for f in used) for row in self.rows]
            for cell in sorted(set(cells)):
                columns.append([a if c == cell else mpf(0) for a, c in zip(product, cells)])
        return columns


def independent(columns):
    """The columns that don't depend on those before them, by Gram and Schmidt."""
    kept, basis = [], []
    for j, column in enumerate(columns):
        rest = list(column)
        for b in basis:
            dot = mpmath.fdot(zip(rest, b))
            rest = [r - dot * v for r, v in zip(rest, b)]
        norm = mpmath.sqrt(mpmath.fdot(zip(rest, rest)))
        if norm > mpf(10) ** -15 * mpmath.sqrt(mpmath.fdot(zip(column, column))):
            kept.append(j)
            basis.append([r / norm for r in rest])
    return kept


class Fit:
    def __init__(self, data):
        columns = data.design()
        self.n_basic = len(columns)
        self.kept = independent(columns)
        self.rows = [[(i, columns[k][r]) for i, k in enumerate(self.kept) if columns[k][r] != 0]
                     for r in range(len(data.rows))]
        self.categories = data.categories()
        self.equations = len(self.categories) - 1
        self.y = [self.categories.index(c) for c in data.y]
        self.weights = data.weights
        size = self.equations * len(self.kept)
        self.beta = [mpf(0)] * size
        if data.head["Intercept"] == "yes":
            counts = [mpmath.fsum(w for w, y in zip(self.weights, self.y) if y == t)
                      for t in range(len(self.categories))]
            for t in range(self.equations):
                self.beta[t * len(self.kept)] = mpmath.log(counts[t] / counts[-1])
        self.initial = self.pass_over_rows()[0]
        self.newton()

    def probabilities(self, r):
        p = len(self.kept)
        eta = [mpmath.fsum(v * self.beta[t * p + i] for i, v in self.rows[r])
               for t in range(self.equations)] + [mpf(0)]
        exps = [mpmath.exp(e) for e in eta]
        total = mpmath.fsum(exps)
        return [e / total for e in exps]

    def pass_over_rows(self):
        p, n = len(self.kept), self.equations
        likelihood = mpf(0)
        score = [mpf(0)] * (n * p)
        hessian = mpmath.zeros(n * p)
        for r, row in enumerate(self.rows):
            q, w = self.probabilities(r), self.weights[r]
            likelihood += w * mpmath.log(q[self.y[r]])
            for s in range(n):
                residual = w * ((self.y[r] == s) - q[s])
                for i, v in row:
                    score[s * p + i] += residual * v
            for s, t in itertools.product(range(n), range(n)):
                a = w * ((q[s] if s == t else 0) - q[s] * q[t])
                for (i, v), (j, u) in itertools.product(row, row):
                    hessian[s * p + i, t * p + j] += a * v * u
        return likelihood, score, hessian

    def newton(self):
        for _ in range(60):
            _, score, hessian = self.pass_over_rows()
            step = mpmath.lu_solve(hessian, mpmath.matrix(score))
            self.beta = [b + s for b, s in zip(self.beta, step)]
            if max(abs(s) / (abs(b) + mpf(10) ** -6) for b, s in zip(self.beta, step)) < mpf(10) ** -32:
                break
        else:
            raise SystemExit("no convergence")
        self.final, score, hessian = self.pass_over_rows()
        self.covariance = mpmath.inverse(hessian)

    def values(self, data):
        place = [t * self.n_basic + k for t in range(self.equations) for k in self.kept]
        weight = mpmath.fsum(self.weights)
        n_all = self.equations * self.n_basic
        cox_snell = 1 - mpmath.exp(2 * (self.initial - self.final) / weight)
        result = {
            ("parameters", "", ""): mpf(n_all),
            ("total_weight", "", ""): weight,
            ("degrees_of_freedom", "", ""): weight - n_all,
            ("initial_ll", "", ""): self.initial,
            ("final_ll", "", ""): self.final,
            ("cox_snell", "", ""): cox_snell,
            ("nagelkerke", "", ""): cox_snell / (1 - mpmath.exp(2 * self.initial / weight)),
            ("mcfadden", "", ""): 1 - self.final / self.initial,
        }
        for a, i in enumerate(place):
            result["estimate", str(i), ""] = self.beta[a]
            for b, j in enumerate(place[:a + 1]):
                result["covariance", str(i), str(j)] = self.covariance[a, b]
        for r, row in enumerate(data.kept):
            for c, q in zip(self.categories, self.probabilities(r)):
                result["probability", str(row), str(c)] = q
        return result


def refine(path):
    comments, _, lines = read(path)
    data = Data(path.with_name(path.name.replace("_expected", "")))
    values = Fit(data).values(data)
    largest = {}
    for quantity, i, j, _ in lines[1:]:
        size = abs(values[quantity, i, j])
        largest[quantity] = max(size, largest.get(quantity, 0))
    worst = mpf(0)
    for quantity, i, j, r_value in lines[1:]:
        scale = largest[quantity] if quantity in PER_KIND else abs(values[quantity, i, j])
        worst = max(worst, abs(mpf(r_value) - values[quantity, i, j]) / scale)
    if worst > mpf(10) ** -9:
        raise SystemExit(f"{path.name}: R is off by {mpmath.nstr(worst, 3)}")
    note = "# Refined by refine.py with 40 digits"
    text = [c for c in comments if c != note] + [note, ",".join(lines[0])]
    for quantity, i, j, _ in lines[1:]:
        value = values[quantity, i, j]
        if abs(value) < mpf(10) ** -25 * largest[quantity]:
            value = mpf(0)
        text.append(f"{quantity},{i},{j},{mpmath.nstr(value, DIGITS)}")
    path.write_text("\n".join(text) + "\n")
    print(f"{path.stem:24} R was off by {mpmath.nstr(worst, 2)}", flush=True)


for expected in sorted(FOLDER.glob("*_expected.csv")):
    refine(expected)
