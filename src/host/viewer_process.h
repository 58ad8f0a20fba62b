// How a host starts the viewer.
#pragma once

#include <sys/types.h>

#include <string>

namespace kelhost {

// The viewer that belongs to the program that asks: in its folder or, in a build tree, in ../src beside that. Else the
// bare name, which startViewer looks up in PATH.
std::string viewerProgram();

struct ViewerStart {
    pid_t process;  // a child of the caller, who reaps it; 0 when it could not be started
    int error;      // an error number, 0 for none
};

// Starts `program --channel CHANNEL`, which outlives the caller: in a session of its own, with /dev/null as input and
// output and without the caller's other descriptors. Its messages go to the caller's terminal when standard error is
// one (nobody is to wait for the end of a pipe that the viewer holds), else to /dev/null. A program without a slash is
// looked up in PATH. It does not listen yet when this returns.
ViewerStart startViewer(const std::string& program, const std::string& channel);

}  // namespace kelhost
