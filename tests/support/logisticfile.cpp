// SPDX-License-Identifier: Apache-2.0
#include "support/logisticfile.h"

#include "support/numbers.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>

namespace mctest {

namespace {

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (;;) {
    const std::size_t to = text.find(separator, from);
    parts.push_back(text.substr(from, to - from));
    if (to == std::string::npos) return parts;
    from = to + separator.size();
  }
}

// A file of the folder: comments "# key: value", the last of each key, then lines of cells.
struct File {
  std::map<std::string, std::string> head;
  std::map<std::string, std::vector<std::string>> levels;  // by variable
  std::vector<std::vector<std::string>> lines;
};

File ReadFile(const std::string& name) {
  const std::string path = std::string(MCSTAT_TEST_DATA) + "/logistic/" + name + ".csv";
  std::ifstream stream(path);
  if (!stream) throw std::runtime_error("can't read " + path);
  File file;
  std::string line;
  while (std::getline(stream, line)) {
    if (line[0] != '#') {
      file.lines.push_back(Split(line, ","));
      continue;
    }
    const std::vector<std::string> pair = Split(line.substr(2), ": ");
    if (pair.size() < 2) continue;
    file.head[pair[0]] = pair[1];
    if (pair[0] == "Levels") {
      const std::vector<std::string> variable = Split(pair[1], " = ");
      file.levels[variable[0]] = Split(variable[1], ", ");
    }
  }
  return file;
}

// A column as its head tells it: "name:role:levels".
void AddColumn(const std::string& head, int position, LogisticProblem& problem,
               std::map<std::string, int>& positions) {
  const std::vector<std::string> parts = Split(head, ":");
  positions[parts[0]] = position;
  if (parts[1] == "dependent") {
    problem.dependent = position;
    problem.categories = ToNumber<int>(parts[2]);
  } else if (parts[1] == "factor") {
    problem.factors.push_back(position);
    problem.factorSizes.push_back(ToNumber<int>(parts[2]));
  } else if (parts[1] == "covariate") {
    problem.covariates.push_back(position);
  } else {
    problem.freqWeight = position;
  }
}

EffectTerms ReadEffect(const std::string& text, const LogisticProblem& problem,
                       const std::map<std::string, int>& positions) {
  EffectTerms effect;
  for (const std::string& name : Split(text, "*")) {
    const int variable = positions.at(name);
    const auto& factors = problem.factors;
    if (std::find(factors.begin(), factors.end(), variable) != factors.end()) {
      effect.factors.emplace_back(variable, false);
    } else {
      effect.covariates.push_back(variable);
    }
  }
  return effect;
}

int ReadReference(const File& file, const std::string& dependent) {
  const std::string& wanted = file.head.at("Reference");
  if (wanted == "last") return -1;
  if (wanted == "first") return -2;
  const std::vector<std::string>& levels = file.levels.at(dependent);
  return static_cast<int>(std::find(levels.begin(), levels.end(), wanted) - levels.begin());
}

// One element of what has elements, from a line "quantity,i,j,value".
void StoreIndexed(const std::vector<std::string>& line, LogisticReference& reference) {
  if (line[0] == "estimate") {
    const std::size_t i = ToNumber<std::size_t>(line[1]);
    reference.redundant[i] = false;
    reference.estimates[i] = ToNumber<long double>(line[3]);
  } else if (line[0] == "covariance") {
    const std::size_t i = ToNumber<std::size_t>(line[1]);
    const std::size_t j = ToNumber<std::size_t>(line[2]);
    reference.covariance[i][j] = reference.covariance[j][i] = ToNumber<long double>(line[3]);
  } else if (line[0] == "probability") {
    reference.probabilities.push_back(
        {ToNumber<std::size_t>(line[1]), ToNumber<int>(line[2]), ToNumber<long double>(line[3])});
  }
}

}  // namespace

LogisticProblem ReadLogisticData(const std::string& name) {
  const File file = ReadFile(name);
  LogisticProblem problem;
  std::map<std::string, int> positions;
  const std::vector<std::string>& columns = file.lines.front();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    AddColumn(columns[i], static_cast<int>(i), problem, positions);
  }
  problem.reference = ReadReference(file, Split(columns.front(), ":").front());
  problem.intercept = file.head.at("Intercept") == "yes";
  for (const std::string& effect : Split(file.head.at("Effects"), "; ")) {
    problem.effects.push_back(ReadEffect(effect, problem, positions));
  }
  for (std::size_t r = 1; r < file.lines.size(); ++r) {
    std::vector<double>& row = problem.rows.emplace_back();
    for (const std::string& cell : file.lines[r]) row.push_back(ToNumber(cell));
  }
  return problem;
}

LogisticReference ReadLogisticReference(const std::string& name) {
  const File file = ReadFile(name + "_expected");
  LogisticReference reference;
  std::map<std::string, long double> single;
  for (const std::vector<std::string>& line : file.lines) {
    if (line[1].empty()) single[line[0]] = ToNumber<long double>(line[3]);
  }
  const auto n = static_cast<std::size_t>(single.at("parameters"));
  reference.redundant.assign(n, true);
  reference.estimates.assign(n, 0.0L);
  reference.covariance.assign(n, std::vector<long double>(n, 0.0L));
  for (const std::vector<std::string>& line : file.lines) StoreIndexed(line, reference);
  reference.degreesOfFreedom = static_cast<double>(single.at("degrees_of_freedom"));
  reference.totalWeight = static_cast<double>(single.at("total_weight"));
  reference.initialLL = single.at("initial_ll");
  reference.finalLL = single.at("final_ll");
  reference.coxSnell = single.at("cox_snell");
  reference.nagelkerke = single.at("nagelkerke");
  reference.mcFadden = single.at("mcfadden");
  return reference;
}

LogisticProblem WithReferenceLast(LogisticProblem problem) {
  const int last = problem.categories - 1;
  if (problem.reference == -1 || problem.reference == last) return problem;
  const int reference = problem.reference == -2 ? 0 : problem.reference;
  const auto y = static_cast<std::size_t>(problem.dependent);
  for (std::vector<double>& row : problem.rows) {
    if (row[y] == reference) {
      row[y] = last;
    } else if (row[y] > reference) {
      row[y] -= 1.0;
    }
  }
  problem.reference = -1;
  return problem;
}

}  // namespace mctest
