// SPDX-License-Identifier: Apache-2.0
//
// Runs `mcfit build` as a user does: what a settings document asks for, and what it can't.
#include "mcfit/support/arguments.h"
#include "mcfit/support/childprocess.h"
#include "mcfit/support/programresults.h"
#include "mcfit/support/settingstext.h"
#include "mcfit/support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using testing::HasSubstr;
using testing::Not;

// A build that says nothing beside its results, and the same in options.
void ExpectSameResults(const std::string& settings, const std::string& data,
                       const Arguments& options) {
  const ProgramResult build = RunMcfit({"build", settings, data});
  const ProgramResult fit = RunMcfit(options);
  ASSERT_EQ(fit.status, 0) << fit.err;
  EXPECT_EQ(build.status, 0) << build.err;
  EXPECT_EQ(build.err, fit.err);
  EXPECT_EQ(WithoutTimes(build.out), WithoutTimes(fit.out));
}

TEST(McfitBuild, TheExamplesGiveWhatTheCommandLineGives) {
  ExpectSameResults(kData + "birthwt-settings.xml", kData + "birthwt.csv",
                    {"logistic", kData + "birthwt.csv", "--dependent", "birthweight", "--factors",
                     "race,smoke,hypertension,irritability", "--covariates", "age,lwt"});
  ExpectSameResults(kData + "yields-settings.xml", kData + "yields.csv",
                    {"linear", kData + "yields.csv", "--dependent", "yield", "--factors",
                     "variety,water", "--effects", "variety, water, variety*water"});
}

/// Three colours of hair and the columns of a table of counts.
const std::string kHairFields = Categorical("hair", {"Black", "Blond", "Brown", "Red"}) +
                                Categorical("eye", {"Blue", "Brown", "Green", "Hazel"}) +
                                Categorical("sex", {"Female", "Male"}) + Continuous("people");

TEST(McfitBuild, ParametersMeanWhatTheOptionsOfTheSameNamesMean) {
  const TemporaryFolder folder;
  const std::string hair = kData + "haireyecolor.csv";
  const Arguments fit = {"logistic", hair,     "--dependent", "hair",
                         "--freq",   "people", "--factors",   "eye,sex"};
  const std::string roles = Parameter("CatResponses", "hair") +
                            Parameter("FrequencyWeightVar", "people") +
                            ListParameter("inputs", {"eye", "sex"});
  struct Case {
    std::string parameters;
    Arguments options;
  };
  const Case cases[] = {
      {"", {}},
      {Parameter("model", "logistic") + Parameter("reference", "first"), {"--reference", "first"}},
      {Parameter("reference", "Brown"), {"--reference", "Brown"}},
      {Parameter("max-iterations", "2"), {"--max-iterations", "2"}},
      {Parameter("reread", "true"), {"--reread"}},
      {Parameter("reread", "false"), {}},
      {Parameter("intercept", "false"), {"--no-intercept"}},
      {Parameter("intercept", "true"), {}},
      {Parameter("digits", "12"), {"--digits", "12"}},
      {Parameter("confidence", "90"), {"--confidence", "90"}},
      {Parameter("tolerance", "0.5"), {"--tolerance", "0.5"}},
      {Parameter("missing", "Hazel"), {"--missing", "Hazel"}},
      {ListParameter("missing", {"Hazel", "Red"}), {"--missing", "Hazel,Red"}},
      {Parameter("effects", "eye*sex"), {"--effects", "eye*sex"}},
      {Parameter("effects", ""), {"--effects", ""}},
      {ListParameter("effects", {"sex, eye", "eye*sex"}), {"--effects", "sex, eye, eye*sex"}},
      {Parameter("effects", "eye(sex)"), {"--effects", "eye(sex)"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.parameters);
    ExpectSameResults(folder.Write("s.xml", Settings(kHairFields, roles + c.parameters)), hair,
                      fit + c.options);
  }
}

TEST(McfitBuild, AMatrixHoldsTheFactorsOfEachProductARepeatedOneAsAPower) {
  const TemporaryFolder folder;
  const std::string data = folder.Write(
      "d.csv", "y,the x,z,a\n1,1,2,p\n2.5,2,3,q\n4,3,1,p\n3,4,2.5,q\n7,5,0,p\n5,6,1,q\n9,7,3,q\n");
  const std::string settings = folder.Write(
      "s.xml", Settings(Continuous("y") + Continuous("the x") + Continuous("z") +
                            Categorical("a", {"p", "q"}),
                        Parameter("target", "y") + ListParameter("inputs", {"a", "the x", "z"}) +
                            "<MatrixParmeter name=\"effects\">\n"
                            "  <ArrayParameter><Value value=\"the x\"/><Value value=\"the x\"/>"
                            "</ArrayParameter>\n"
                            "  <ArrayParameter><Value value=\"a\"/><Value value=\"z\"/>"
                            "</ArrayParameter>\n"
                            "  <ArrayParameter><Value value=\"the x\"/></ArrayParameter>\n"
                            "</MatrixParmeter>"));
  ExpectSameResults(settings, data,
                    {"linear", data, "--dependent", "y", "--factors", "a", "--covariates",
                     "\"the x\",z", "--effects", "\"the x\"^2, a*z, \"the x\""});
}

TEST(McfitBuild, RolesAreToldByTheDictionaryOrByNameAndAVariableMayBeNamedTwiceForOneRole) {
  const TemporaryFolder folder;
  const std::string peas = kData + "peas.csv";
  const std::string fields = Continuous("progeny") + Continuous("parent") + Continuous("weight");
  const Arguments fit = {"linear",       peas,     "--dependent", "progeny",
                         "--covariates", "parent", "--weight",    "weight"};
  const std::string weight = Parameter("RegressionWeightVar", "weight");
  for (const std::string& roles :
       {Parameter("target", "progeny") + Parameter("inputs", "parent"),
        Parameter("ContResponses", "progeny") + Parameter("ContPredictors", "parent"),
        Parameter("model", "linear") + Parameter("target", "progeny") +
            Parameter("ContResponses", "progeny") + ListParameter("ContPredictors", {"parent"}) +
            ListParameter("inputs", {"parent"})}) {
    SCOPED_TRACE(roles);
    ExpectSameResults(folder.Write("s.xml", Settings(fields, roles + weight)), peas, fit);
  }
  ExpectSameResults(folder.Write("s.xml", Settings(fields, Parameter("target", "progeny"))), peas,
                    {"linear", peas, "--dependent", "progeny"});
}

TEST(McfitBuild, FactorsByNameStandBeforeThoseThatTheDictionaryTells) {
  const TemporaryFolder folder;
  const std::string hair = kData + "haireyecolor.csv";
  ExpectSameResults(
      folder.Write("s.xml", Settings(kHairFields, Parameter("target", "hair") +
                                                      ListParameter("inputs", {"eye", "sex"}) +
                                                      Parameter("CatPredictors", "sex"))),
      hair, {"logistic", hair, "--dependent", "hair", "--factors", "sex,eye"});
}

TEST(McfitBuild, EncodingsOfTheDocumentArePassedOver) {
  const TemporaryFolder folder;
  const std::string text = Settings(Continuous("progeny") + Continuous("parent"),
                                    Parameter("target", "progeny") + Parameter("inputs", "parent"));
  const std::string peas = kData + "peas.csv";
  for (const bool isBigEndian : {false, true}) {
    ExpectSameResults(
        folder.Write("s.xml",
                     InUtf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + text, isBigEndian)),
        peas, {"linear", peas, "--dependent", "progeny", "--covariates", "parent"});
  }
  // A column "höhe", in Latin-1 here and in UTF-8 there.
  const std::string latin = folder.Write(
      "latin.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" +
                       Settings(Continuous("y") + Continuous("h\xF6he"),
                                Parameter("target", "y") + Parameter("inputs", "h\xF6he")));
  const std::string data = folder.Write("d.csv", "y,h\xC3\xB6he\n1,1\n2,2\n4,3\n");
  ExpectSameResults(latin, data,
                    {"linear", data, "--dependent", "y", "--covariates", "h\xC3\xB6he"});
}

TEST(McfitBuild, AModelGoesOutAsPmmlAndScoresASecondFileAsThatOfTheCommandLine) {
  const TemporaryFolder folder;
  const std::string births = kData + "birthwt.csv";
  const ProgramResult build =
      RunMcfit({"build", kData + "birthwt-settings.xml", births, "--predict", births, "--out",
                folder.Path("build.csv"), "--pmml", folder.Path("build.xml")});
  ASSERT_EQ(build.status, 0) << build.err;
  const ProgramResult fit =
      RunMcfit({"logistic", births, "--dependent", "birthweight", "--factors",
                "race,smoke,hypertension,irritability", "--covariates", "age,lwt", "--predict",
                births, "--out", folder.Path("fit.csv"), "--pmml", folder.Path("fit.xml")});
  ASSERT_EQ(fit.status, 0) << fit.err;
  EXPECT_EQ(folder.Read("build.csv"), folder.Read("fit.csv"));

  // The models are the same text; the dictionary knows more.
  const auto model = [](const std::string& text) {
    return text.substr(text.find("<ParameterList"));
  };
  const std::string pmml = folder.Read("build.xml");
  EXPECT_EQ(model(pmml), model(folder.Read("fit.xml")));
  EXPECT_THAT(pmml, HasSubstr("displayName=\"Birth weight\""));
  EXPECT_THAT(pmml, HasSubstr("displayValue=\"Below 2500 g\""));
  EXPECT_THAT(pmml, HasSubstr("displayValue=\"Not asked\""));
}

TEST(McfitBuild, ParametersThatNobodyKnowsAreTold) {
  const TemporaryFolder folder;
  const std::string settings = folder.Write(
      "s.xml", Settings(Continuous("progeny") + Continuous("parent"),
                        Parameter("target", "progeny") + Parameter("inputs", "parent") +
                            Parameter("inputs", "progeny") + Parameter("tolerence", "0.1") +
                            Parameter("reference", "last") + "<MatrixParameter name=\"effects\"/>" +
                            "<ComplexParameter name=\"more\">" + Parameter("digits", "3") +
                            "</ComplexParameter><Parameter name=\"digits\"/>"));
  const ProgramResult run = RunMcfit({"build", settings, kData + "peas.csv"});
  EXPECT_EQ(run.status, 0);
  const std::string head = "mcfit: note: " + settings + ": ";
  const std::string unknown = " means nothing to this build and is passed over\n";
  EXPECT_EQ(run.err, head + "parameter 'digits' has a place without a value; the default stands\n" +
                         head +
                         "Parameter 'inputs' is there more than once; the first one stands\n" +
                         head + "Parameter 'tolerence'" + unknown + head + "Parameter 'reference'" +
                         unknown + head + "MatrixParameter 'effects'" + unknown + head +
                         "ComplexParameter 'more'" + unknown);
  EXPECT_EQ(run.out, RunMcfit({"linear", kData + "peas.csv", "--dependent", "progeny",
                               "--covariates", "parent"})
                         .out);
}

TEST(McfitBuild, DocumentsThatCannotBeReadAreRefusedWithTheirName) {
  const TemporaryFolder folder;
  const std::string data = kData + "peas.csv";
  const std::string good = Settings(Continuous("progeny"), Parameter("target", "progeny"));
  int count = 0;
  const auto build = [&](const std::string& text) {
    return Arguments{"build", folder.Write(std::to_string(++count) + ".xml", text), data};
  };
  const auto without = [&](const std::string& part) {
    std::string text = good;
    text.erase(text.find(part), part.size());
    return build(text);
  };
  const std::string secret = folder.Write("secret.txt", "progeny");
  ExpectFailures(
      2,
      {{{"build", folder.Path("none.xml"), data}, "cannot open '" + folder.Path("none.xml") + "'"},
       {{"build", folder.Path(""), data}, "cannot open"},
       {build(""), ".xml: line 1, column 1: "},
       {build("<PMML>\n<DataDictionary></PMML>"), ".xml: line 2, column "},
       {build(good + "<more/>"), ".xml: line 1, column "},
       {build("<!DOCTYPE PMML [<!ENTITY f SYSTEM \"" + secret + "\">]>" +
              Settings(Continuous("progeny"), Parameter("target", "&f;"))),
        ".xml: "},
       {build("<Other/>"), ".xml: error 105 (MCS_PMML_NOT_PMML)"},
       {build("<PMML/>"), ".xml: error 106 (MCS_PMML_NO_DICTIONARY)"},
       {build("<PMML><DataDictionary/></PMML>"), ".xml: error 119 (MCS_SET_NO_PARAMETERS)"},
       {build("<PMML><DataDictionary/><MiningBuildTask><Extension/></MiningBuildTask></PMML>"),
        ".xml: error 119 (MCS_SET_NO_PARAMETERS)"},
       {without(" name=\"progeny\""), ".xml: field 1 of the DataDictionary: error 108"},
       {without(" optype=\"continuous\""), ".xml: field 1 of the DataDictionary: error 108"},
       {build(Settings(Continuous("a") + Field("b", "continuous", "boolean"), "")),
        ".xml: field 2 of the DataDictionary: error 109"},
       {build(Settings(Continuous("a") + Continuous("a"), "")),
        ".xml: field 2 of the DataDictionary: error 111"},
       {build(Settings(Continuous("a") + Continuous("b"), "",
                       "<TransformationDictionary><DerivedField name=\"c\"/>"
                       "</TransformationDictionary>")),
        ".xml: field 1 of the TransformationDictionary: error 108"}});
}

TEST(McfitBuild, RequestsThatCannotBeAreRefusedWithTheNameOfTheParameter) {
  const TemporaryFolder folder;
  const std::string fields = Continuous("y") + Continuous("x") + Continuous("n") +
                             Categorical("a", {"p", "q"}) + Categorical("g", {"u", "v"});
  const std::string data = folder.Write("d.csv", "y,x,n,a,g\n1,1,1,p,u\n2,3,2,q,v\n5,3,1,p,v\n");
  const std::string linear = Parameter("target", "y");
  const std::string logistic = Parameter("target", "g");
  std::vector<Failure> failures;
  int count = 0;
  const auto refuse = [&](const std::string& parameters, const std::string& message) {
    const std::string settings =
        folder.Write(std::to_string(++count) + ".xml", Settings(fields, parameters));
    failures.push_back({{"build", settings, data}, settings + ": " + message});
  };
  refuse("", "no target; a regression has one, named by target, ContResponses or CatResponses");
  refuse(ListParameter("target", {"y", "x"}), "several targets: 'y', 'x'; ");
  refuse(Parameter("target", "y") + Parameter("CatResponses", "g"), "several targets: ");
  refuse(Parameter("target", "z"), "parameter 'target': the dictionary has no field 'z'");
  refuse(linear + Parameter("inputs", "x,n"),
         "parameter 'inputs': the dictionary has no field 'x,n'");
  refuse(Parameter("CatResponses", "y"),
         "parameter 'CatResponses': the dictionary calls field 'y' continuous");
  refuse(Parameter("ContResponses", "g"),
         "parameter 'ContResponses': the dictionary calls field 'g' categorical");
  refuse(linear + Parameter("ContPredictors", "a"),
         "parameter 'ContPredictors': the dictionary calls field 'a' categorical");
  refuse(linear + Parameter("CatPredictors", "x"),
         "parameter 'CatPredictors': the dictionary calls field 'x' continuous, and no Discretize");
  refuse(linear + ListParameter("inputs", {"x", "x"}),
         "parameter 'inputs': field 'x' stands in it twice");
  refuse(linear + Parameter("inputs", "y"),
         "parameter 'inputs': field 'y' stands in target, too; a field takes one role");
  refuse(linear + Parameter("inputs", "n") + Parameter("FrequencyWeightVar", "n"),
         "parameter 'FrequencyWeightVar': field 'n' stands in inputs, too");
  refuse(linear + Parameter("RegressionWeightVar", "a"),
         "parameter 'RegressionWeightVar': the dictionary calls field 'a' categorical");
  refuse(linear + ListParameter("FrequencyWeightVar", {"n"}),
         "parameter 'FrequencyWeightVar': error 121 (MCS_SET_IS_LIST)");
  refuse(linear + "<Parameter name=\"ContPredictors\" isList=\"true\"/>",
         "parameter 'ContPredictors': error 122 (MCS_SET_NO_LIST)");
  refuse(linear + "<Parameter name=\"ContPredictors\"/>",
         "parameter 'ContPredictors': error 108 (MCS_DOC_MISSING_ITEM)");
  refuse(linear + Parameter("model", "probit"),
         "parameter 'model' is linear or logistic, not 'probit'");
  refuse(linear + Parameter("model", "logistic"),
         "parameter 'model' is logistic, but the dictionary calls the target 'y' continuous");
  refuse(logistic + Parameter("model", "linear"),
         "parameter 'model' is linear, but the dictionary calls the target 'g' categorical");
  refuse(linear + Parameter("tolerance", "small"),
         "parameter 'tolerance': error 109 (MCS_DOC_BAD_VALUE)");
  refuse(linear + Parameter("tolerance", "1"), "parameter 'tolerance' must lie between 0 and 1");
  refuse(linear + Parameter("tolerance", "NaN"), "parameter 'tolerance' must lie between 0 and 1");
  refuse(linear + Parameter("digits", "18"), "parameter 'digits' must lie between 1 and 17");
  refuse(linear + Parameter("digits", "-1"), "parameter 'digits': error 109");
  refuse(linear + ListParameter("digits", {"7"}), "parameter 'digits': error 121");
  refuse(linear + Parameter("intercept", "1"), "parameter 'intercept': error 109");
  refuse(logistic + Parameter("max-iterations", "-1"), "parameter 'max-iterations': error 109");
  refuse(logistic + Parameter("inputs", "x") + Parameter("reference", "w"),
         "parameter 'reference': no row has 'w' in column 'g'; the categories are 'u', 'v'");
  refuse(linear + Parameter("inputs", "x") + Parameter("effects", "x*"),
         "parameter 'effects' 'x*', at its end: a column name is expected");
  refuse(linear + Parameter("inputs", "x") + Parameter("effects", "x") +
             "<MatrixParmeter name=\"effects\"><ArrayParameter><Value value=\"x\"/>"
             "</ArrayParameter></MatrixParmeter>",
         "parameter 'effects' is there as a matrix, too; write one of them");
  ExpectFailures(2, failures);

  const std::string settings = folder.Write(
      "s.xml", Settings(fields, linear + Parameter("inputs", "x") + Parameter("effects", "x, zz")));
  ExpectFailures(2, {{{"build", settings, data}, "effect 'zz': 'zz' is neither a factor nor a "},
                     {{"build", settings}, "data is required"},
                     {{"build"}, "settings is required"}});
}

TEST(McfitBuild, NoResultIsWrittenOverTheSettings) {
  const TemporaryFolder folder;
  const std::string settings = folder.Write(
      "s.xml", Settings(Continuous("progeny") + Continuous("parent"),
                        Parameter("target", "progeny") + Parameter("inputs", "parent")));
  ExpectFailures(2, {{{"build", settings, kData + "peas.csv", "--pmml", settings},
                      "would overwrite an input file"}});
}

}  // namespace
