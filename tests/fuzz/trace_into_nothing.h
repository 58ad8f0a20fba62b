// While it lives, every trace line is made, and none written: the viewer's ways with and without a trace differ.
#pragma once

class TraceIntoNothing {
  public:
    TraceIntoNothing();
    ~TraceIntoNothing();
    TraceIntoNothing(const TraceIntoNothing&) = delete;
    TraceIntoNothing& operator=(const TraceIntoNothing&) = delete;
};
