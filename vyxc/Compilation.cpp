#include "Compilation.h"

#include "Checker.h"

#include <utility>

namespace vyxc {

Compilation::Compilation(std::vector<std::string> includeDirs, std::vector<std::string> const& paths)
    : files_(Loader(std::move(includeDirs), diagnostics_).load(paths)) {
  if (diagnostics_.ok()) model_ = Checker(files_, diagnostics_).check();
}

} // namespace vyxc
