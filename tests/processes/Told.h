// What the reactors of a process were told, kept as the state that it comes to: a line for each value and
// child.
//
// Invariants:
// (1) A change that tells what was so already is noted as wrong, and so are a removal of what isn't there and
//     a default value of what was never set.

#pragma once

#include "pbrctl/TreeWatch.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace processes_test {

class Told {
public:
  // Listens from now on. What the root holds already is not told.
  void watch(Vyx::Ptr<Vyx::Entity> const& root, std::string const& path);

  // What was told comes to, a line each, without what has its default again.
  std::string text() const;
  // What was told and shouldn't have been.
  std::string const& wrong() const { return wrong_; }
  // How many changes of that attribute were told.
  unsigned changesOf(std::string const& attribute) const;
  unsigned changes() const { return changes_; }

private:
  struct Watched {
    Vyx::Ptr<Vyx::Entity> root;
    std::unique_ptr<Pbrctl::TreeWatch> watch;
  };

  void apply(Pbrctl::Change const& change);
  void setTo(Pbrctl::Change const& change);
  void dropBelow(std::string const& path);
  void expect(bool isRight, Pbrctl::Change const& change);

  std::map<std::string, Watched> watched_;   // By the path of the root.
  std::map<std::string, std::string> state_; // By path.
  std::map<std::string, unsigned> attributes_;
  unsigned changes_ = 0;
  std::string wrong_;
};

} // namespace processes_test
