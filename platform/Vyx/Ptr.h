// The counted pointer.

#pragma once

#include "Vyx/PtrInterface.h"

#include <cstddef>
#include <type_traits>
#include <utility>

namespace Vyx {

// Holds one reference while it isn't null. Dereferencing a null pointer is not checked; where a null would
// be a mistake of the caller, `validPtr` says so.
template <class T> class Ptr {
public:
  using element_type = T;

  Ptr() = default;
  Ptr(std::nullptr_t) {}
  Ptr(T* p) : p_(p) { raise(); }
  Ptr(Ptr const& o) : p_(o.p_) { raise(); }
  Ptr(Ptr&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ptr(Ptr<U> const& o) : p_(o.ptr()) { raise(); }
  template <class U>
  requires std::is_convertible_v<U*, T*> Ptr(Ptr<U>&& o)
  noexcept : p_(o.vyxDetach()) {}
  ~Ptr() {
    if (p_) counted(p_)->vyxReferenceDec();
  }
  // The new object is held before the old one is let go.
  Ptr& operator=(Ptr o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }

  T* ptr() const { return p_; }
  T* operator->() const { return p_; }
  T& operator*() const { return *p_; }
  explicit operator bool() const { return p_ != nullptr; }

  // Counts nothing.
  void swap(Ptr& o) noexcept { std::swap(p_, o.p_); }

  // Gives up the pointer with its reference.
  T* vyxDetach() noexcept { return std::exchange(p_, nullptr); }
  // Takes over a reference that the caller holds.
  static Ptr vyxAdopt(T* p) noexcept {
    Ptr adopted;
    adopted.p_ = p;
    return adopted;
  }

  friend bool operator==(Ptr const& a, Ptr const& b) { return a.p_ == b.p_; }
  friend bool operator!=(Ptr const& a, Ptr const& b) { return a.p_ != b.p_; }
  template <class U> friend bool operator==(Ptr const& a, Ptr<U> const& b) { return a.ptr() == b.ptr(); }

private:
  static PtrInterface const* counted(T const* p) { return p; }
  void raise() const {
    if (p_) counted(p_)->vyxReferenceInc();
  }

  T* p_ = nullptr;
};

// Takes over the birth reference of a fresh object.
template <class T> Ptr<T> ptrFromNew(T* fresh) { return Ptr<T>::vyxAdopt(fresh); }

// RETURNS a null pointer when the object is of another type, or null.
template <class To, class From> Ptr<To> dynamicPtrCast(Ptr<From> const& p) {
  return Ptr<To>(dynamic_cast<To*>(p.ptr()));
}

} // namespace Vyx
