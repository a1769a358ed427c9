// What every entity type promises, whatever its attributes. EntityTypes.cpp and PlatformTypes.cpp run the
// suite for each type.
//
// The attributes are found in the type's schema and record, and changed by reflection, so that a new type is
// covered by its line there, and a new attribute by none.

#include "Vyx/Vyx.h"
#include "frame/EntityFrame.h"

#include "support/AnyEntry.h"
#include "support/Heard.h"
#include "support/Invariants.h"

#include <algorithm>
#include <memory>

namespace contract {

using Vyx::GenericIf;
using Op = GenericIf::AttributeOp;
using Object = Vyx::Ptr<GenericIf>;
using Index = Vyx::Ptr<GenericIf const>;

// What a constructor or a key is given.
template <class T> T sample() {
  if constexpr (std::is_same_v<T, Vyx::Name>)
    return "contract";
  else
    return T();
}

// Calls `use` with a sample of each constructor parameter of X.
template <class X, class Use> auto withSamples(Use const& use) {
  return [&]<class... T>(std::tuple<T...> const*) {
    return use(sample<T>()...);
  }(static_cast<typename X::VyxParameterTuple const*>(nullptr));
}

template <class X> Vyx::Ptr<X> made() {
  return withSamples<X>([](auto const&... values) { return Vyx::make<X>(values...); });
}

// Calls `see` with a null pointer to each attribute class of X and, with `inherited`, of its bases.
template <class X, class See> void forEachAttribute(bool inherited, See const& see) {
  [&]<class... Attrs>(frame::AttributeList<Attrs...>) {
    (see(static_cast<Attrs const*>(nullptr)), ...);
  }(typename X::VyxAttributes());
  if constexpr (requires { typename X::VyxBase::VyxAttributes; })
    if (inherited) forEachAttribute<typename X::VyxBase>(true, see);
}

// A round for the attribute; for a keyed one, with a sample of a key. RETURNS whether reactors hear of it.
template <class Attr> bool notify(typename Attr::Owner& of) {
  if constexpr (requires { typename Attr::Key; })
    frame::notify<Attr>(of, sample<typename Attr::Key>());
  else if constexpr (requires(typename Attr::Owner::NotifieeConst & reactor) { Attr::tell(reactor); })
    frame::notify<Attr>(of);
  else
    return false;
  return true;
}

// The first enumerator other than the value; null when there is none.
inline Object otherEnumerator(Vyx::VyxType const& type, GenericIf& value) {
  for (Vyx::VyxType::AttributeQIteratorConst at(type); at; ++at) {
    Object const one = value.attributeOp({at->id(), Op::read}, Index(), {});
    if (one->strRep() != value.strRep()) return one;
  }
  return {};
}

// A value other than that one; null for a type that the contract can't vary.
inline Object varied(GenericIf& value) {
  Vyx::VyxType const* const type = value.type();
  if (type == Vyx::typeOf<bool>()) return Vyx::wrap(!Vyx::unwrap<bool>(value));
  if (type == Vyx::typeOf<unsigned>()) return Vyx::wrap(Vyx::unwrap<unsigned>(value) + 1);
  if (type == Vyx::typeOf<unsigned long long>()) return Vyx::wrap(Vyx::unwrap<unsigned long long>(value) + 1);
  if (type == Vyx::typeOf<double>()) return Vyx::wrap(Vyx::unwrap<double>(value) + 1);
  if (type == Vyx::typeOf<Vyx::Name>())
    return Vyx::wrap(Vyx::Name(Vyx::unwrap<Vyx::Name>(value) + Vyx::String8("+")));
  if (type == Vyx::typeOf<Vyx::String8>())
    return Vyx::wrap(Vyx::unwrap<Vyx::String8>(value) + Vyx::String8("+"));
  return type->isEnumType() ? otherEnumerator(*type, value) : Object();
}

class Stranger : public Vyx::Entity {};

template <class X> class EntityContract : public testing::Test {
protected:
  ~EntityContract() override {
    if (entity) checkInvariants(*entity);
  }

  Vyx::Ptr<X> entity = made<X>();
  Vyx::Ptr<AnyEntry<X>> const reactor = attach(AnyEntry<X>::make(), entity);

  Object reflection() { return X::_fwkType()->genericIf(Vyx::Ptr<Vyx::Entity>(entity)); }
  Object read(Vyx::VyxAttr const& attr) {
    return reflection()->attributeOp({attr.id(), Op::read}, Index(), {});
  }
  void write(Vyx::VyxAttr const& attr, Object const& value) {
    reflection()->attributeOp({attr.id(), Op::write}, Index(), value);
  }
  // Whether the attribute is a single value that may be written and that the contract can vary.
  bool isScalar(Vyx::VyxAttr const& attr) {
    if (!attr.ops() || attr.keyType() || attr.keyAttr()) return false;
    try {
      Object const value = read(attr);
      write(attr, value);
      return value && varied(*value);
    } catch (Vyx::Exception const&) {
      return false;
    }
  }
};

TYPED_TEST_SUITE_P(EntityContract);

TYPED_TEST_P(EntityContract, RecordIsOne) {
  EXPECT_EQ(TypeParam::_fwkType(), TypeParam::_fwkType());
  EXPECT_EQ(TypeParam::_fwkType(), this->entity->fwkType());
  EXPECT_EQ(TypeParam::_fwkType(), Vyx::VyxType::typeByName(TypeParam::_fwkType()->fullTypeName()));
}

TYPED_TEST_P(EntityContract, BaseListsTheTypeOnce) {
  auto const& derived = TypeParam::VyxBase::_fwkType()->derivedTypeQ();
  EXPECT_EQ(1, std::count(derived.begin(), derived.end(), TypeParam::_fwkType()));
  EXPECT_EQ(TypeParam::VyxBase::_fwkType(), TypeParam::_fwkType()->baseType());
}

TYPED_TEST_P(EntityContract, RecordTellsSizeAndConstructor) {
  Vyx::VyxType const& type = *TypeParam::_fwkType();
  EXPECT_EQ(sizeof(TypeParam), type.size());
  EXPECT_TRUE(type.isEntity());
  auto const& names = TypeParam::kVyxParameterNames;
  EXPECT_EQ(std::vector<Vyx::Name>(names.begin(), names.end()), type.constructorArgNameQ());
}

TYPED_TEST_P(EntityContract, CanBeReplicated) { EXPECT_TRUE(this->entity->vyxHasAttrLogInterface()); }

TYPED_TEST_P(EntityContract, AnswersTheNameOfEachAttribute) {
  forEachAttribute<TypeParam>(true, [&]<class Attr>(Attr const*) {
    EXPECT_EQ(Attr::name, this->entity->attributeString(Attr::id));
    EXPECT_EQ(Attr::name, TypeParam::_fwkType()->attr(Vyx::AttributeId(Attr::id))->name());
  });
  EXPECT_EQ("unknown", this->entity->attributeString(9999));
}

TYPED_TEST_P(EntityContract, FreshOneIsAnOrphanThatItsMakerHolds) {
  auto const fresh = made<TypeParam>();
  EXPECT_EQ(1U, fresh->references());
  EXPECT_FALSE(fresh->parent());
  EXPECT_EQ(136, fresh->parentAttrId());
}

TYPED_TEST_P(EntityContract, ReflectionMakesOne) {
  auto const list = Vyx::ptrFromNew(new GenericIf::List_);
  auto name = TypeParam::kVyxParameterNames.begin();
  withSamples<TypeParam>([&](auto const&... values) { (list->argumentIs(*name++, Vyx::wrap(values)), ...); });
  Object const one = TypeParam::_fwkType()->newInstance(Index(list));
  EXPECT_EQ(TypeParam::_fwkType(), one->type());
}

TYPED_TEST_P(EntityContract, NondestructingIsToldOncePerChange) {
  for (bool value : {true, true, false, false}) this->entity->isNondestructingIs(value);
  EXPECT_EQ(2U, this->reactor->take());
}

TYPED_TEST_P(EntityContract, ZeroReferencesAreAlwaysTold) {
  for (bool value : {true, true, false}) this->entity->zeroReferencesIs(value);
  EXPECT_EQ(3U, this->reactor->take());
}

TYPED_TEST_P(EntityContract, EachChangeOfAScalarIsToldOnceAndNoEqualValue) {
  for (Vyx::VyxType::AttributeQIteratorConst at(*TypeParam::_fwkType()); at; ++at) {
    if (!this->isScalar(*at)) continue;
    Object const before = this->read(*at);
    Object const other = varied(*before);
    EXPECT_EQ(0U, this->reactor->take()) << at->name();
    this->write(*at, other);
    EXPECT_EQ(1U, this->reactor->take()) << at->name();
    EXPECT_EQ(other->strRep(), this->read(*at)->strRep()) << at->name();
    this->write(*at, other);
    EXPECT_EQ(0U, this->reactor->take()) << at->name();
    this->write(*at, before);
    EXPECT_EQ(1U, this->reactor->take()) << at->name();
  }
}

TYPED_TEST_P(EntityContract, ExceptionOfAnEntryComesBackWithTheAttributesId) {
  this->reactor->throws = true;
  forEachAttribute<TypeParam>(true, [&]<class Attr>(Attr const*) {
    std::vector<Vyx::AttributeId> expected;
    if (notify<Attr>(*this->entity)) expected = {Attr::id};
    EXPECT_EQ(expected, this->reactor->takeExceptions()) << Attr::name;
    EXPECT_EQ(expected.size(), this->reactor->take()) << Attr::name;
  });
}

TYPED_TEST_P(EntityContract, ExceptionOfAFrameRoundComesBackWithItsId) {
  this->reactor->throws = true;
  this->entity->isNondestructingIs(true);
  this->entity->zeroReferencesIs(true);
  EXPECT_EQ((std::vector<Vyx::AttributeId>{6, 5}), this->reactor->takeExceptions());
  this->entity->isNondestructingIs(false);
}

TYPED_TEST_P(EntityContract, EntriesAreEmpty) {
  class Plain : public TypeParam::Notifiee {
  public:
    using TypeParam::Notifiee::onNotificationException;
    void onNotificationException(Vyx::AttributeId id) override { ADD_FAILURE() << id; }
  };
  this->reactor->notifierIs(nullptr);
  auto const plain = listen<Plain>(this->entity);
  forEachAttribute<TypeParam>(true, [&]<class Attr>(Attr const*) { notify<Attr>(*this->entity); });
  this->entity->zeroReferencesIs(true);
}

TYPED_TEST_P(EntityContract, StrangerAsNotifierActsAsNone) {
  this->reactor->notifierIs(Vyx::make<Stranger>());
  EXPECT_FALSE(this->reactor->notifier());
  EXPECT_EQ(1U, this->entity->references());
  this->entity->zeroReferencesIs(true);
  EXPECT_EQ(0U, this->reactor->take());
}

TYPED_TEST_P(EntityContract, WeakReactorOutlivesItUnattached) {
  this->reactor->isWeakReferenceIs(true);
  EXPECT_EQ(1U, this->entity->references());
  this->entity = nullptr;
  EXPECT_FALSE(this->reactor->notifier());
  EXPECT_EQ("", this->reactor->name());
}

REGISTER_TYPED_TEST_SUITE_P(EntityContract, RecordIsOne, BaseListsTheTypeOnce, RecordTellsSizeAndConstructor,
                            CanBeReplicated, AnswersTheNameOfEachAttribute,
                            FreshOneIsAnOrphanThatItsMakerHolds, ReflectionMakesOne,
                            NondestructingIsToldOncePerChange, ZeroReferencesAreAlwaysTold,
                            EachChangeOfAScalarIsToldOnceAndNoEqualValue,
                            ExceptionOfAnEntryComesBackWithTheAttributesId,
                            ExceptionOfAFrameRoundComesBackWithItsId, EntriesAreEmpty,
                            StrangerAsNotifierActsAsNone, WeakReactorOutlivesItUnattached);

// The type's own name, as a test may be called.
struct TypeName {
  template <class X> static std::string GetName(int) {
    std::string name(X::_fwkType()->fullTypeName().view());
    std::replace(name.begin(), name.end(), ':', '_');
    return name;
  }
};

} // namespace contract
