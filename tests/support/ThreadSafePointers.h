// Turns the runtime's locked counts on for a scope.

#pragma once

#include "Vyx/VFPtrInterface.h"

class ThreadSafePointers {
public:
  ThreadSafePointers() { Vyx::VFPtrInterface::enableThreadSafePointers = true; }
  ThreadSafePointers(ThreadSafePointers const&) = delete;
  ThreadSafePointers& operator=(ThreadSafePointers const&) = delete;
  ~ThreadSafePointers() { Vyx::VFPtrInterface::enableThreadSafePointers = before_; }

private:
  bool const before_ = Vyx::VFPtrInterface::enableThreadSafePointers;
};
