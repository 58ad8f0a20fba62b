// hpglsend's command line.
#pragma once

#include <chrono>
#include <string>
#include <vector>

struct SendOptions {
    std::string channel = "default";
    std::string viewer;             // its program; empty: the one that belongs to hpglsend
    std::string receive;            // the file for the page that the user prints; empty: none is waited for
    std::chrono::seconds wait{10};  // for the viewer to listen, at most
    bool start = true;              // a viewer, where none listens
    bool asIs = false;              // files do not go through the plotter
    bool help = false;
    std::vector<std::string> files;  // "-" is standard input; at least one
};

extern const char SEND_USAGE[];

// What --help says below the usage.
extern const char SEND_HELP[];

// Answers what is wrong with the words, or nothing.
std::string parseSendOptions(const std::vector<std::string>& words, SendOptions& options);
