#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""report.py PROGRAMS ROWS [FILTER]: runs the benchmarks and prints one table, in Markdown.

Every figure is the best of several repetitions, which run in turn with their peers: on a machine
that does other things the least disturbed run is the one that compares."""
import json
import subprocess
import sys

REPETITIONS = 9
BUILD_REPETITIONS = 5

# Ours, the peers it is divided by, and the goal where there is one: at most so many times the
# first peer.
GROUPS = [
    ("Dense rows, widest vectors", "DenseBlocked/Widest", ["DenseDsyrk", "DenseEigen", "DensePlainLoop"],
     {"50": 1.0, "200": 1.0, "1000": 1.0}),
    ("Dense rows, 2 lanes", "DenseBlocked/Sse2", ["DenseDsyrk", "DenseEigen", "DensePlainLoop"], {}),
    ("Rows of 10 non-zeros", "SparseScatter", ["SparsePlainLoop"], {}),
    ("Sweep, all rows", "SweepAllRows", ["SweepPeerPotrfPotri", "SweepOneByOne"],
     {"50": 2.5, "254": 2.5, "1000": 2.5}),
    ("LTChol", "CholeskyLTChol", ["CholeskyPeerPotrf", "CholeskyPeerEigen", "CholeskyPlainLoop"],
     {"50": 4.0, "254": 4.0, "1000": 4.0}),
    ("Eigenvalues", "EigenValues", ["EigenDsyev/Values", "EigenDspev/Values"], {"200": 3.0}),
    ("Eigenvalues and vectors", "EigenVectors", ["EigenDsyev/Vectors", "EigenDspev/Vectors"],
     {"200": 3.0}),
    ("Eigenvalues and vectors of a pair", "EigenPair", ["EigenDsygv"], {"200": 3.0}),
    ("Linpack::Dgefa", "LinpackDgefa", ["LinpackPeerGetrf"], {}),
    ("Linpack::Dspfa", "LinpackDspfa", ["LinpackPeerSptrf"], {}),
    ("Linpack::Dqrdc", "LinpackDqrdc", ["LinpackPeerGeqrf"], {}),
    ("Linpack::Dsvdc, all vectors", "LinpackDsvdc", ["LinpackPeerGesvd"], {}),
    ("Multinomial probabilities, widest vectors, a row", "MultinomialKernel/Widest", ["MultinomialPlainLoop"], {}),
    ("Multinomial probabilities, 2 lanes, a row", "MultinomialKernel/Sse2", ["MultinomialPlainLoop"], {}),
    ("MCHashtable, a lookup", "LookupHashtable", ["LookupUnorderedMap", "LookupMap"], {}),
    ("UpdateAll, a row", "RowUpdateAll", ["RowPlainCounts"], {}),
    ("GetRowParameterIndices, a row", "RowParameterIndices", ["RowPlainCounts"], {}),
    ("UpdateForPattern, a row", "PassTogether", ["PassOneByOne"], {}),
    ("UpdateForPattern, likelihood only", "TrialTogether", ["TrialOneByOne"], {}),
    ("Encoding numbers, n categories, a value", "EncodeNumbers", ["EncodeNumbersPeerHash"], {}),
    ("Encoding strings, n categories, a value", "EncodeStrings", ["EncodeStringsPeerHash"], {}),
    ("Reading a saved list, a category", "ReadList", [], {}),
    ("AddContVar, a variable", "AddVariables", [], {}),
    ("Exporting and writing a dictionary of 10,000 variables", "WriteDictionary", [], {}),
    ("Writing a string array of 1,000,000 numbers", "WriteNumbers", [], {}),
    ("Exporting and writing it", "ExportAndWriteNumbers", [], {}),
    ("Reading a dictionary of n fields, a field", "ReadFields", ["ReadFieldsPeerXerces"], {"10000": 1.3}),
    ("Reading n categories of one field, a category", "ReadTexts", ["ReadTextsPeerXerces"], {"100000": 1.3}),
    ("Reading n numeric categories, a category", "ReadNumbers", ["ReadNumbersPeerXerces"], {"100000": 1.3}),
    ("FillVarList, a field", "FillFields", [], {}),
    ("FillVarList with names and bins, a field", "FillNamedFieldsWithBins", [], {}),
    ("Random words of the twister, a number", "RandomWords", ["RandomWordsPeer32", "RandomWordsPeer64"], {"10000": 1.0}),
    ("Uniform numbers", "RandomUniforms", ["RandomUniformsPeer32", "RandomUniformsPeer64"], {"10000": 1.0}),
    ("Uniform numbers, congruential", "RandomCongruential", ["RandomCongruentialPeer"], {}),
    ("Normal numbers, MCRandomValues", "RandomNormals", ["RandomNormalsPeer32", "RandomNormalsPeer64"], {}),
    ("Normal numbers, MCRNGNormal", "RandomNormalsOfGenerator", ["RandomNormalsPeer32", "RandomNormalsPeer64"], {}),
    ("Gamma numbers, shape 2.5", "RandomGammas", ["RandomGammasPeer64"], {}),
    ("Binomial numbers, 1,000 trials", "RandomBinomials", ["RandomBinomialsPeer64"], {}),
    ("Beta numbers, 2 and 3", "RandomBetas", [], {}),
    ("Merging n models of 1 MB each", "MergeModels", ["MergeModelsPeerXerces"], {}),
    ("Distributions: erfc, a call", "DistributionErfc", ["DistributionErfcBoost"], {}),
    ("Distributions: normal distribution, a call", "DistributionNormal", ["DistributionNormalBoost"], {}),
    ("Distributions: normal quantile, a call", "DistributionNormalQuantile", ["DistributionNormalQuantileBoost"], {}),
    ("Distributions: ln gamma, a call", "DistributionLogGamma", ["DistributionLogGammaBoost"], {}),
    ("Distributions: incomplete gamma, a call", "DistributionGamma", ["DistributionGammaBoost"], {}),
    ("Distributions: incomplete beta, a call", "DistributionBeta", ["DistributionBetaBoost"], {}),
    ("Distributions: t, a call", "DistributionT", ["DistributionTBoost"], {}),
    ("Distributions: F, upper tail, a call", "DistributionF", ["DistributionFBoost"], {}),
    ("Distributions: binomial, a call", "DistributionBinomial", ["DistributionBinomialBoost"], {}),
    ("Distributions: binomial term, a call", "DistributionBinomialTerm", ["DistributionBinomialTermBoost"], {}),
    ("Distributions: chi-square quantile, a call", "DistributionChiSquareQuantile", ["DistributionChiSquareQuantileBoost"], {}),
    ("Distributions: beta quantile, a call", "DistributionBetaQuantile", ["DistributionBetaQuantileBoost"], {}),
    ("Distributions: t quantile, a call", "DistributionTQuantile", ["DistributionTQuantileBoost"], {}),
    ("Distributions: F quantile, a call", "DistributionFQuantile", ["DistributionFQuantileBoost"], {}),
]

# The data, the name of the peer, how many times its time and how many megabytes are the goal. A
# logistic build keeps the extracted values of its rows.
BUILDS = [
    ("linear", "1,000,000 rows, 50 covariates", "D1", "dsyrk + Cholesky", 3.0, 30.0),
    ("linear", "1,000,000 rows, A(20) B(50) C(10) A*C, 5 covariates", "D2",
     "scatter by hand + Cholesky", 10.0, 30.0),
    ("linear", "20,000 rows, 1,000 covariates", "D5", "dsyrk + Cholesky", 2.0, None),
    ("logistic", "200,000 rows, 20 covariates, 4 categories", "D3", "five passes, dsyrk", 4.0,
     1.1 * 200000 * 21 * 8 / 2**20),
    ("logistic", "1,000,000 rows, A(10) B(20) C(5), 2 covariates, 3 categories", "D4",
     "five passes, sums by cell", 6.0, (1.1 * 1000000 * 3 * 8 + 1000 * 64) / 2**20),
    ("logistic", "1,000,000 rows, 10 covariates, 2 categories", "D6", "five passes, dsyrk", 4.5,
     1.1 * 1000000 * 11 * 8 / 2**20),
]

PEER_NAMES = {
    **{group[2][0]: "Boost.Math" for group in GROUPS if group[0].startswith("Distributions: ")},
    "DenseDsyrk": "OpenBLAS dsyrk", "DenseEigen": "Eigen rankUpdate", "DensePlainLoop": "plain loop",
    "SparsePlainLoop": "plain loop with zeros", "SweepPeerPotrfPotri": "OpenBLAS dpotrf + dpotri",
    "SweepOneByOne": "Sweep one by one", "CholeskyPeerPotrf": "OpenBLAS dpotrf",
    "EigenDsyev/Values": "LAPACK dsyev", "EigenDspev/Values": "LAPACK dspev",
    "EigenDsyev/Vectors": "LAPACK dsyev", "EigenDspev/Vectors": "LAPACK dspev",
    "EigenDsygv": "LAPACK dsygv",
    "CholeskyPeerEigen": "Eigen LLT", "CholeskyPlainLoop": "plain loop",
    "LinpackPeerGetrf": "OpenBLAS dgetrf", "LinpackPeerSptrf": "OpenBLAS dsptrf",
    "LinpackPeerGeqrf": "OpenBLAS dgeqrf", "LinpackPeerGesvd": "OpenBLAS dgesvd",
    "LookupUnorderedMap": "std::unordered_map", "LookupMap": "std::map",
    "EncodeNumbersPeerHash": "std::unordered_map", "EncodeStringsPeerHash": "std::unordered_map",
    "ReadFieldsPeerXerces": "Xerces's parse", "ReadTextsPeerXerces": "Xerces's parse",
    "ReadNumbersPeerXerces": "Xerces's parse", "MergeModelsPeerXerces": "Xerces's parse",
    "RowPlainCounts": "counts in arrays",
    "MultinomialPlainLoop": "plain loop with exp and log of the C library",
    "RandomWordsPeer32": "std::mt19937", "RandomWordsPeer64": "std::mt19937_64",
    "RandomUniformsPeer32": "std::mt19937", "RandomUniformsPeer64": "std::mt19937_64",
    "RandomCongruentialPeer": "std::linear_congruential_engine",
    "RandomNormalsPeer32": "std::normal_distribution of mt19937",
    "RandomNormalsPeer64": "std::normal_distribution of mt19937_64",
    "RandomGammasPeer64": "std::gamma_distribution", "RandomBinomialsPeer64": "std::binomial_distribution",
    "PassOneByOne": "UpdateForRow one by one", "TrialOneByOne": "UpdateForRow one by one",
}


def processor():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        lines = dict(line.split(":", 1) for line in info.read().split("\n\n")[0].split("\n") if ":" in line)
    fields = {key.strip(): value.strip() for key, value in lines.items()}
    return "%s (family %s, model %s)" % (fields["model name"], fields["cpu family"], fields["model"])


def run_benchmarks(programs, pattern):
    """Best CPU time in microseconds of each benchmark, and its flop/s and items/s."""
    command = [programs + "/mcstat_benchmarks", "--benchmark_format=json", "--benchmark_min_time=0.1",
               "--benchmark_repetitions=%d" % REPETITIONS,
               "--benchmark_enable_random_interleaving=true"]
    if pattern:
        command.append("--benchmark_filter=" + pattern)
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    best = {}
    for entry in json.loads(output)["benchmarks"]:
        if entry["run_type"] != "iteration" or entry.get("error_occurred"):
            continue
        name = entry["run_name"]
        if name not in best or entry["cpu_time"] < best[name]["cpu_time"]:
            best[name] = entry
    return best


def throughput(entry):
    if "flop/s" in entry:
        return "%.1f Gflop/s" % (entry["flop/s"] / 1e9)
    if "items_per_second" in entry:
        return "%.0f M/s" % (entry["items_per_second"] / 1e6)
    if "bytes_per_second" in entry:
        return "%.0f MB/s" % (entry["bytes_per_second"] / 1e6)
    return ""


def time_text(entry):
    if "items_per_second" in entry:
        return "%.1f ns" % (1e9 / entry["items_per_second"])
    return "%.4g %s" % (entry["cpu_time"], entry["time_unit"])


def goal_text(goal, ratio):
    if goal is None:
        return ""
    return "%g: %s" % (goal, "reached" if ratio <= goal else "MISSED")


def print_kernels(best):
    for title, ours, peers, goals in GROUPS:
        names = [n for n in best if n == ours or n.startswith(ours + "/")]
        for name in sorted(names, key=lambda n: (len(n), n)):
            order = name[len(ours) + 1:]
            rivals = [(p, best.get(p + ("/" + order if order else ""))) for p in peers]
            ratios = [(p, best[name]["cpu_time"] / r["cpu_time"]) for p, r in rivals if r]
            first = ratios[0][1] if ratios else float("nan")
            print("| %s | %s | %s | %s | | %s | %s |" % (
                title, "n = " + order if order.isdigit() else order, time_text(best[name]), throughput(best[name]),
                ", ".join("%.2f %s" % (ratio, PEER_NAMES[p]) for p, ratio in ratios),
                goal_text(goals.get(order), first)))


def run_build(program, name, rows):
    words = subprocess.run([program, name, rows], check=True, stdout=subprocess.PIPE).stdout.split()
    return float(words[1]), float(words[2]), float(words[3])


def print_builds(programs, rows):
    for kind, title, name, peer, goal, memory_goal in BUILDS:
        ours, limits = [], []
        for _ in range(BUILD_REPETITIONS):
            limits.append(run_build(programs + "/bench_%slimit" % kind, name, rows))
            ours.append(run_build(programs + "/bench_%sbuild" % kind, name, rows))
        if abs(ours[0][2] - limits[0][2]) > 1e-8:
            sys.exit("%s: R square %.12g in place of %.12g" % (name, ours[0][2], limits[0][2]))
        seconds, memory, _ = min(ours)
        ratio = seconds / min(limits)[0]
        goal_told = goal_text(goal, ratio)
        if memory_goal:
            goal_told += ", %.1f MB: %s" % (memory_goal, "reached" if memory <= memory_goal else "MISSED")
        print("| %s build | %s: %s | %.3f s | | %.1f MB | %.2f %s (%.3f s) | %s |" % (
            kind.capitalize(), name, title, seconds, memory, ratio, peer, min(limits)[0], goal_told))


def main():
    programs, rows = sys.argv[1:3]
    pattern = sys.argv[3] if len(sys.argv) > 3 else None
    best = run_benchmarks(programs, pattern)
    print("Processor: %s. CPU time, one thread.\n" % processor())
    print("| Work | Size | Time | Throughput | Peak memory | Times the peer's | Goal |")
    print("|---|---|--:|--:|--:|---|---|")
    print_kernels(best)
    if pattern is None:
        print_builds(programs, rows)


if __name__ == "__main__":
    main()
