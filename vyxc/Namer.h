// All names that generated code has and a schema has not.

#pragma once

#include <string>

namespace vyxc {

class Namer {
public:
  static std::string upper(std::string name); // `nexthop` gives `Nexthop`.
  static std::string lower(std::string name);
  static std::string plural(std::string const& name); // Adds `s`; after a final s `es`.

  // Operations of an attribute.
  static std::string setter(std::string const& name) { return name + "Is"; }
  static std::string del(std::string const& name) { return name + "Del"; }
  static std::string delAll(std::string const& name) { return name + "DelAll"; }
  static std::string notify(std::string const& name) { return name + "Notify"; }
  static std::string enqueue(std::string const& name) { return name + "Enq"; }
  static std::string dequeue(std::string const& name) { return name + "Deq"; }
  static std::string make(std::string const& name) { return "new" + upper(name); }
  static std::string iteratorFrom(std::string const& name) { return name + "Iterator"; }
  static std::string iteratorConstFrom(std::string const& name) { return name + "IteratorConst"; }
  static std::string field(std::string const& name) { return name + "_"; }

  // Classes of an attribute.
  static std::string attribute(std::string const& name) { return "VyxAttr" + upper(name); }
  static std::string record(std::string const& name) { return "Vyx" + upper(name); }
  static std::string map(std::string const& name) { return "Vyx" + upper(name) + "Map"; }
  static std::string iterator(std::string const& name) { return upper(name) + "Iterator"; }
  static std::string iteratorConst(std::string const& name) { return upper(name) + "IteratorConst"; }

  // Entries of a reactor.
  static std::string entry(std::string const& name) { return "on" + upper(name); }
  static std::string immediateEntry(std::string const& name) { return entry(name) + "vyxImmediate"; }

  // Of a type, and of a unit.
  static std::string factory(std::string const& type) { return lower(type) + "Factory"; }
  static std::string enumerators(std::string const& type) { return "k" + plural(type); }
  static std::string enumRecord(std::string const& type) { return "_fwkType_" + type; }
  static std::string enumFrom(std::string const& type) { return type + "Instance"; }
  static std::string valueSchema(std::string const& type) { return "VyxSchema" + type; }
  static std::string valueRecord(std::string const& type) { return "VyxRecord" + type; }
  static std::string valueDefinition(std::string const& type) { return "vyxDefine" + type; }
  static std::string adapter(std::string const& type) { return type + "Sa"; }
  static std::string unit(std::string const& name) { return "vyxUnit" + name; }

  // Files, relative to the output folder. A namespace is a folder.
  static std::string folder(std::string space);
  static std::string header(std::string const& space, std::string const& type);
  static std::string source(std::string const& space, std::string const& type);
  static std::string adapterHeader(std::string const& space, std::string const& type) {
    return header(space, adapter(type));
  }
  static std::string unitSource(std::string const& space, std::string const& unit);
};

} // namespace vyxc
