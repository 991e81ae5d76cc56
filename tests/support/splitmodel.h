// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace mctest {

/// The PMML file of one model, piece by piece as text. What it is made of at the start is valid
/// PMML 4.1: y explained by kind, which is a or b.
struct SplitModel {
  std::string root = R"(PMML version="4.1" xmlns="http://www.dmg.org/PMML-4_1")";
  std::string header = R"(<Header copyright="c"/>)";
  std::string fields = R"(<DataField name="y" optype="continuous" dataType="double"/>)"
                       R"(<DataField name="kind" optype="categorical" dataType="string">)"
                       R"(<Value value="a"/><Value value="b"/></DataField>)";
  std::string transformations;
  std::string model = R"(RegressionModel functionName="regression")";
  std::string schema = R"(<MiningField name="y" usageType="predicted"/><MiningField name="kind"/>)";
  std::string content =
      R"(<RegressionTable intercept="1"><CategoricalPredictor name="kind" value="a" )"
      R"(coefficient="2"/></RegressionTable>)";

  std::string Text() const;
};

/// `levels` elements inside each other around the text.
std::string Nested(int levels, const std::string& text = "");

}  // namespace mctest
