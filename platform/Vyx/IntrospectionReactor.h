// The one object that hears of every namespace, type and attribute as the registration units announce them.

#pragma once

#include "Vyx/VyxType.h"

namespace Vyx {

class IntrospectionReactor : public PtrInterface {
public:
  // Whether announcements are taken. A unit that finds it not ready leaves its types without attributes and
  // tries again later.
  class Context : public PtrInterface {
  public:
    bool ready() const { return ready_; }
    void readyIs(bool ready) { ready_ = ready; }

  private:
    bool ready_ = true;
  };

  static Ptr<IntrospectionReactor> global();

  Ptr<Context> const& context() const { return context_; }
  void contextIs(Ptr<Context> context) { context_ = std::move(context); }

  void handleNameSpace(char const* name);
  void handleType(Ptr<VyxType const> const& type, Ptr<VyxType const> const& base);
  // Makes the record of an attribute that the parent doesn't instantiate, and enters it.
  VyxAttr* defNoninstantiatingAttr(VyxType& type, Name const& name, VyxType const* valueType,
                                   VyxType const* keyType, VyxAttr::AttrFlags const& flags,
                                   VyxAttr::VyxAttrIntrospectionFlags introspection, AttributeId id);
  void handleAttr(Ptr<VyxAttr> const& attr);
  void handleAttrContextExit();
  // Closes the innermost of what is open: a type, else a namespace.
  void handleScopeExit();

  // Everything heard so far, a line each: "namespace Pbr", "type PbrFwdAction : Action", "attr recursive",
  // "attr exit", "exit".
  std::vector<std::string> const& heard() const { return heard_; }

private:
  Ptr<Context> context_ = ptrFromNew(new Context);
  std::vector<std::string> heard_;
};

} // namespace Vyx
