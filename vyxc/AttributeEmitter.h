// What one attribute adds to the class of its entity.

#pragma once

#include "CodeWriter.h"
#include "CppTypes.h"
#include "Model.h"

#include <string>

namespace vyxc {

class AttributeEmitter {
public:
  AttributeEmitter(CodeWriter& out, EntityType const& type) : out_(out), cpp_(type.space), type_(type) {}

  // ORDER: the changing operations stand in the order of their slots, should they be virtual.
  void declaration(Attribute const& attribute);
  // The line of what is stored; nothing for a function.
  void field(Attribute const& attribute);

private:
  void function(Attribute const& attribute);
  void constant(Attribute const& attribute);
  void scalar(Attribute const& attribute);
  void reference(Attribute const& attribute);
  void child(Attribute const& attribute);
  void collection(Attribute const& attribute);
  void references(Attribute const& attribute);
  void children(Attribute const& attribute);
  void queue(Attribute const& attribute);

  // The attribute's class, from its kind's arguments behind the owner on; stays open for more lines.
  void openAttribute(Attribute const& attribute, std::string const& kind, std::string const& arguments);
  void fieldAccess(Attribute const& attribute);
  void tell(Attribute const& attribute);
  void instantiation(Attribute const& attribute);
  void keyedWrite(Attribute const& attribute, std::string const& call);
  void record(Attribute const& attribute, std::string const& base, std::string const& arguments);
  void iteratorTypes(Attribute const& attribute);
  void iterators(Attribute const& attribute);
  void notification(Attribute const& attribute);
  void valueDeletion(Attribute const& attribute, std::string const& value);

  std::string key(Attribute const& attribute) const;         // U32 as `unsigned int`
  std::string keyArgument(Attribute const& attribute) const; // with ` key`
  std::string mapType(Attribute const& attribute) const;
  std::string call(char const* operation, Attribute const& attribute,
                   std::string const& arguments = {}) const;
  static std::string ifVirtual(Attribute const& attribute) { return attribute.isVirtual ? "virtual " : ""; }

  CodeWriter& out_;
  CppTypes cpp_;
  EntityType const& type_;
};

} // namespace vyxc
