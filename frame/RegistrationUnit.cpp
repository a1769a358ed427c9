#include "frame/RegistrationUnit.h"

namespace frame {

void RegistrationUnit::run() {
  if (started_) return;
  Vyx::Ptr<Vyx::IntrospectionReactor> const reactor = Vyx::IntrospectionReactor::global();
  if (!reactor->context() || !reactor->context()->ready()) return;
  started_ = true;
  for (UnitType const& type : types_) type.record();
  reactor->handleNameSpace(nameSpace_);
  for (UnitType const& type : types_) type.define(*reactor, type.fullName);
  reactor->handleScopeExit();
}

void RegistrationUnit::load() {
  for (UnitType const& type : types_) Vyx::VyxType::typeNodeIs(type.record(), type.fullName);
  run();
  loaded_ = true;
}

} // namespace frame
