// Counts the session's calls into the component while they run, so that a call re-entering from
// inside one (a face's message box with an event loop) can be told apart.
#pragma once

#include "component_session.h"

namespace host {

class ComponentSession::Busy {
  public:
    explicit Busy(ComponentSession& session) : depth_(session.depth_) { ++depth_; }
    ~Busy() { --depth_; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    int& depth_;
};

}  // namespace host
