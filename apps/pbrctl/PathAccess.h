// Reading and changing one attribute of a tree by its path, through reflection alone: nothing here knows a
// type of the model.
//
//   path := "." | step ("." step)*
//   step := attribute ["[" key "]"]      (a key reaches to the next "]" that ends the path or stands before
//   ".")

#pragma once

#include "Vyx/GenericIf.h"

#include <string>
#include <string_view>
#include <vector>

namespace Pbrctl {

// A path that leads nowhere, or a value that doesn't fit; names the step.
struct PathError {
  std::string text;
};

class PathAccess {
public:
  explicit PathAccess(Vyx::Ptr<Vyx::Entity> const& root);

  // RETURNS the value of a scalar or of a keyed value; of an entity each of its attributes, of a collection
  // each member, one a line, `name = value`. THROWS: PathError.
  std::vector<std::string> get(std::string_view path) const;
  // THROWS: PathError, also for what reflection refuses.
  void set(std::string_view path, std::string const& value) const;

private:
  Vyx::Ptr<Vyx::GenericIf> root_;
};

} // namespace Pbrctl
