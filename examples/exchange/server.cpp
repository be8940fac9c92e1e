// The server of the exchange: keeps the tables of a message and answers clients, each in a thread of its own.
//
//     exchange_server STORE PORT CONNECTIONS SAVED
//
// Port 0 is one that the system chooses; the first line printed names it. After so many connections the tables are
// written to SAVED.
#include "store.h"

#include <cstdio>
#include <iostream>
#include <list>

namespace {

struct Visitor {
    exchange::Store* store = nullptr;
    Zn_Socket socket;
    Zn_Thread thread;

    static std::uint32_t Run(void* param)
    {
        auto* self = static_cast<Visitor*>(param);
        exchange::Serve(*self->store, self->socket);
        return 0;
    }
};

int Run(exchange::Store& store, int port, int connections)
{
    constexpr std::uint32_t kLoopback = 0x7F000001; // this machine alone
    constexpr int kLinger = 5, kPatience = 30;
    Zn_Socket listener;
    if (listener.Create(port, kLoopback, kLinger) != 0)
        return listener.lastError;
    std::printf("port %d\n", listener.GetLocalPort());
    static_cast<void>(std::fflush(stdout));
    std::list<Visitor> visitors;
    for (int n = 0; n < connections; ++n) {
        Zn_WString peer;
        const int handle = listener.Accept(peer, kPatience);
        if (handle < 0)
            break;
        Visitor& visitor = visitors.emplace_back();
        visitor.store = &store;
        visitor.socket.Attach(static_cast<unsigned>(handle));
        if (visitor.thread.CreateThread(Visitor::Run, &visitor, 0, 0) != 0)
            visitors.pop_back();
    }
    for (Visitor& visitor : visitors)
        visitor.thread.WaitThread();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::cerr << "exchange_server STORE PORT CONNECTIONS SAVED\n";
        return 2;
    }
    Zn_Buffer bytes;
    exchange::Store store;
    if (!exchange::ReadFile(argv[1], bytes) || !store.Load(bytes)) {
        std::cerr << argv[1] << " can't be read\n";
        return 1;
    }
    if (const int error = Run(store, Zn_AString(argv[2]).ToInteger(), Zn_AString(argv[3]).ToInteger())) {
        std::cerr << "port " << argv[2] << ": " << ZnSysErrorStr(error).ToUtf8() << "\n";
        return 1;
    }
    return exchange::WriteFile(argv[4], store.Save()) ? 0 : 1;
}
