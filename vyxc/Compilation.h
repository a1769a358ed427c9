// One run over the files of one unit: from their paths to a checked model.

#pragma once

#include "Diagnostics.h"
#include "Loader.h"
#include "Model.h"

#include <string>
#include <vector>

namespace vyxc {

class Compilation {
public:
  // Meaning is looked at only if every file could be read: half a declaration makes all its users err.
  Compilation(std::vector<std::string> includeDirs, std::vector<std::string> const& paths);

  Diagnostics const& diagnostics() const { return diagnostics_; }
  // REQUIRES: diagnostics().ok()
  Model const& model() const { return model_; }

private:
  Diagnostics diagnostics_;
  std::vector<LoadedFile> files_; // The spans of the diagnostics and of the model point in here.
  Model model_;
};

} // namespace vyxc
