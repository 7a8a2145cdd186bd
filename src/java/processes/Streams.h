// The standard streams of a program, as its plan has them.
#pragma once

#include <utility>

#include "java/processes/StartPlan.h"

namespace torvan::java::detail {

template <class Handle>
struct Pipe {
  Handle ours;
  Handle childs;
};

// Both ends of the three streams. This process has an end only of those that are pipes.
template <class Handle>
struct Streams {
  Handle ours[StreamCount];
  Handle childs[StreamCount];
};

// Makes them of what the system offers: its Handle, and how it makes one, all of which throw a StartFailure.
template <class System>
Streams<typename System::Handle> MakeStreams(const StartPlan& plan) {
  Streams<typename System::Handle> streams;
  for (int i = 0; i < StreamCount; ++i) {
    const bool isInput = i == 0;
    const StreamPlan& stream = plan.streams[i];
    switch (stream.kind) {
      case StreamPlan::Kind::Nothing:
        streams.childs[i] = System::Open(plan, System::Nothing, isInput);
        break;
      case StreamPlan::Kind::Inherit:
        streams.childs[i] = System::Inherited(plan, i);
        break;
      case StreamPlan::Kind::Pipe: {
        Pipe<typename System::Handle> pipe = System::MakePipe(plan, isInput);
        streams.ours[i] = std::move(pipe.ours);
        streams.childs[i] = std::move(pipe.childs);
        break;
      }
      case StreamPlan::Kind::File:
        streams.childs[i] = System::Open(plan, stream.file, isInput);
    }
  }
  return streams;
}

}  // namespace torvan::java::detail
