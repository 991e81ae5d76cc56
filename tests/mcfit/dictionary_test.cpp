// SPDX-License-Identifier: Apache-2.0
#include "support/outputof.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(DictionaryHost, CodesSavesReadsAndExports) {
  const std::string file = testing::TempDir() + "mcstat_dictionary.xml";
  EXPECT_EQ(mctest::OutputOf(std::string(DICTIONARY_PROGRAM) + " " + file),
            R"(south 1, east -1, missing -1
2.6 plots count as 3
<?xml version="1.0" encoding="UTF-8" ?>

<PMML
	version="3.2"
	xmlns="http://www.dmg.org/PMML-3_2"
	xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
	xsi:schemaLocation="http://www.dmg.org/PMML-3_2 pmml-3-2.xsd">
	<Header
		copyright="Copyright (c) The mcstat authors"/>
	<DataDictionary
		numberOfFields="3">
		<DataField
			name="region"
			displayName="Where it grew"
			optype="categorical"
			dataType="string">
			<Value
				value="north"
				property="valid"/>
			<Value
				value="south"
				property="valid"/>
			<Value
				value="?"
				displayValue="not noted"
				property="missing"/>
		</DataField>
		<DataField
			name="yield"
			displayName="t/ha"
			optype="continuous"
			dataType="float"/>
		<DataField
			name="plots"
			optype="continuous"
			dataType="float"/>
	</DataDictionary>
</PMML>
)");
}

}  // namespace
