// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "command.h"
#include "generate/datadesign.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

namespace mcfit {

/// `mcfit generate`: makes a data set of which it is known what a fit should find.
class GenerateCommand : public Command {
public:
  explicit GenerateCommand(CLI::App& app);

  bool IsChosen() const override { return fpApp->parsed(); }
  void Run() override;

private:
  void DeclareColumns();
  void DeclareModel();
  void CheckSize() const;
  template <typename Write>
  void WriteRows(const DataDesign& design, Write write) const;

  CLI::App* fpApp;
  std::string fOut;
  DesignTexts fTexts;
  std::int64_t fRows = 0;
  std::int64_t fSeed = 1;
};

}  // namespace mcfit
