// Ctrl-C, or a request to end, while a command waits for something that may never come.
//
// As long as an Interruptible lives, the program then ends at once, with code 130 and nothing half done - but not in
// the middle of work that a Finish guards: that is finished first.
#pragma once

namespace zntool {

class Interruptible {
public:
    Interruptible();
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
};

class Finish {
public:
    Finish();
    ~Finish();
    Finish(const Finish&) = delete;
    Finish& operator=(const Finish&) = delete;
};

} // namespace zntool
