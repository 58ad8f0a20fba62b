#include "trace_into_nothing.h"

#include <string>

#include "recorder/recorder.h"
#include "trace/trace.h"
#include "trace/trace_slots.h"

TraceIntoNothing::TraceIntoNothing() {
    recorder::script.environment["DGTRACE"] = std::to_string(TRC_DETAIL);
    recorder::script.failing.insert("OpenFile");
    recorder::script.quiet = true;  // an overlong line is reported
    recorder::recording = false;
    TRCForgetEverything();
    TRCOpenViewer("nothing");
}

TraceIntoNothing::~TraceIntoNothing() {
    TRCForgetEverything();
    recorder::reset();
}
