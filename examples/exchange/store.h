// The tables that the server keeps, and what it does with a request.
#pragma once

#include "messages.h"

#include <map>
#include <mutex>
#include <string>

namespace exchange {

class Store {
public:
    // A store without tables until it is loaded from the bytes of a message; false when these are none.
    bool Load(const Zn_Buffer& bytes);
    // The tables as they are now, as a message.
    Zn_Buffer Save();

    // The answer to a request. Never fails: a request that makes no sense is answered with a code. Several threads may
    // ask at once. Says what it does on standard output unless it is told to be quiet.
    Message Answer(const Message& request);
    void SetQuiet() { quiet_ = true; }
    long long AppliedRequests() const { return appliedRequests_; }

private:
    struct LastChange {
        int number = 0;
        Message answer; // to the change of that number
    };

    Message Change(const Message& request, LastChange& last);
    int Apply(const Message& request, Zn_Result& result);
    static void Bring(Zn_Dataset& table, const Zn_Dataset& changes);

    std::mutex lock_;
    Message content_;
    std::map<std::u16string, LastChange> lastChanges_; // by client
    long long appliedRequests_ = 0;
    bool quiet_ = false;
};

// Answers the requests that come over a connection until the client ends it, sends nothing for some seconds or sends
// something else than frames.
void Serve(Store& store, Zn_Socket& socket);

} // namespace exchange
