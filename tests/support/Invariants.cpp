#include "support/Invariants.h"

#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"
#include "frame/AttributeFlags.h"

namespace {

using Vyx::GenericIf;
using Op = GenericIf::AttributeOp;

Vyx::Entity const* entityOf(Vyx::Ptr<GenericIf> const& interface) {
  auto const* on = dynamic_cast<Vyx::GenericIfEntity const*>(interface.ptr());
  return on ? on->entity().ptr() : nullptr;
}

class Walk {
public:
  explicit Walk(std::vector<std::string>& faults) : faults_(faults) {}

  void entity(Vyx::Entity const& of, std::string const& path) {
    auto const interface = of.fwkType()->genericIf(Vyx::Ptr<Vyx::Entity const>(&of));
    for (Vyx::VyxType::AttributeQIteratorConst at(*of.fwkType()); at; ++at) {
      bool const owned = at->flags().high & frame::kParentMakes;
      if (at->flags().low & frame::kKeyed)
        collection(of, *interface, *at, owned, path + at->name().charPtr());
      else if (owned)
        if (auto const* child = entityOf(interface->attributeOp({at->id(), Op::read}, nullptr, nullptr)))
          this->child(of, *child, at->id(), path + at->name().charPtr());
    }
  }

private:
  void collection(Vyx::Entity const& of, GenericIf& interface, Vyx::VyxAttr const& attr, bool owned,
                  std::string const& path) {
    unsigned walked = 0;
    for (auto at = interface.attributeIteratorConst(attr.id()); at; ++at, ++walked) {
      Vyx::Ptr<GenericIf const> const key = at.key();
      std::string const place = path + "[" + key->strRep().charPtr() + "]";
      auto const* member = entityOf(at.value());
      if (member != entityOf(interface.attributeOp({attr.id(), Op::read}, key, nullptr)))
        faults_.push_back(place + " is not what its key finds");
      if (!Vyx::unwrap<bool>(*interface.attributeOp({attr.id(), Op::contains}, key, nullptr)))
        faults_.push_back(place + " is not found by its key");
      if (owned && member) child(of, *member, attr.id(), place);
    }
    if (walked !=
        Vyx::unwrap<unsigned>(*interface.attributeOp({attr.id(), Op::memberCount}, nullptr, nullptr)))
      faults_.push_back(path + " has another count than members");
  }

  void child(Vyx::Entity const& of, Vyx::Entity const& child, Vyx::AttributeId id, std::string const& place) {
    if (child.parent().ptr() != &of) faults_.push_back(place + " has another parent");
    if (child.parentAttrId() != id) faults_.push_back(place + " stands under another attribute");
    entity(child, place + ".");
  }

  std::vector<std::string>& faults_;
};

} // namespace

std::vector<std::string> invariantFaults(Vyx::Entity const& root) {
  std::vector<std::string> faults;
  Walk(faults).entity(root, "");
  return faults;
}
