// The state of reading one file of the text form: where in the file's blocks it stands, what was read so far,
// and the table of statements, to which the two dialects contribute.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/PbrMap.h"
#include "pbrctl/Statement.h"

#include <memory>
#include <string>
#include <string_view>

namespace Pbrctl {

enum class Block { top, classMap, policyMap, classAction, group, interface, pbrSequence, lineVty };

// Each pointer is set while its block is open. After a head that was refused it points to a spare structure,
// so that the lines of the block are checked in their place all the same.
struct Reading {
  Reading(ConfigAst& into, Diagnostics& errors) : config(into), diagnostics(errors) {}

  ConfigAst& config;
  Diagnostics& diagnostics;
  PbrMaps pbrMaps;

  Block block = Block::top;
  std::string blockName; // Of the outermost open block, for messages.
  std::string className; // Of the class inside it.
  ClassMapAst* classMap = nullptr;
  PolicyMapAst* policyMap = nullptr;
  ClassAst* classAction = nullptr;
  GroupAst* group = nullptr;
  InterfaceAst* interface = nullptr;
  PbrSequence* pbrSequence = nullptr;

  std::unique_ptr<ClassMapAst> spareClassMap;
  std::unique_ptr<PolicyMapAst> sparePolicyMap;
  std::unique_ptr<ClassAst> spareClass;
  std::unique_ptr<GroupAst> spareGroup;
  std::unique_ptr<InterfaceAst> spareInterface;
  std::unique_ptr<PbrSequence> sparePbrSequence;
};

// One kind of statement: where it may stand and who reads it.
struct StatementRule {
  Block block;
  std::string_view keyword;
  void (*read)(Reading&, Statement&); // THROWS: StatementError.
  bool takesSequence = false;
};

// Raises the error for a `no` that finds nothing.
[[noreturn]] void nothingToUndo(Statement const& statement, std::string const& what);

} // namespace Pbrctl
