// send and receive: files as framed messages over a connection.
#include "commands.h"

#include "files.h"
#include "interrupt.h"

#include "Zn_ErrorMsg.h"
#include "Zn_Socket.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>
#include <memory>

namespace zntool {
namespace {

constexpr int kLinger = 10; // seconds in which what is sent may still go out at the end

struct SendOptions {
    std::string where;
    std::string file;
    std::string answer;
    int retries = 1;
    int timeout = 60;
};

struct ReceiveOptions {
    int port = 0;
    std::string out = "-";
    std::string reply;
    int count = 1;
    int timeout = 60;
    bool local = false;
};

[[noreturn]] void FailFor(const std::string& label, const char* action, const Zn_Socket& socket)
{
    throw Failure(BadData, label + ": " + action + ": " + ZnSysErrorStr(socket.lastError).ToUtf8());
}

// Why a message did not come.
std::string WhyNot(int status, const Zn_Socket& socket)
{
    if (status == Zn_Socket::TooLong)
        return "it announces more than " + std::to_string(Zn_Socket::kMaxFrame) + " bytes, or the message is too long";
    if (socket.lastError != 0)
        return ZnSysErrorStr(socket.lastError).ToUtf8();
    return status == Zn_Socket::NoLength ? "the other side closed the connection"
                                         : "the connection ended inside a message";
}

Zn_Buffer ReceiveMessage(Zn_Socket& socket, int timeout, const std::string& label)
{
    Zn_Buffer bytes;
    socket.lastError = 0;
    const int status = socket.RecvAllData(bytes, timeout);
    if (status < 0)
        throw Failure(BadData, label + ": no message: " + WhyNot(status, socket));
    return bytes;
}

void SendMessage(Zn_Socket& socket, const Zn_Buffer& bytes, const std::string& label)
{
    if (socket.SendAllData(bytes) != 0)
        FailFor(label, "can't be sent to", socket);
}

void Write(const std::string& path, const Zn_Buffer& bytes)
{
    const Finish finish;
    WriteFile(path, AsText(bytes));
}

// Splits HOST:PORT.
int SplitPort(const std::string& where, std::string& host)
{
    const std::size_t colon = where.rfind(':');
    int port = 0;
    if (colon != std::string::npos) {
        const char* end = where.data() + where.size();
        const auto [stop, error] = std::from_chars(where.data() + colon + 1, end, port);
        if (stop != end || error != std::errc())
            port = 0;
        host = where.substr(0, colon);
    }
    if (port < 1 || port > 65535 || host.empty())
        throw Failure(BadUsage, where + ": give HOST:PORT, with a port from 1 to 65535");
    return port;
}

void Send(const SendOptions& options)
{
    std::string host;
    const int port = SplitPort(options.where, host);
    const Zn_Buffer bytes = ReadFile(options.file);
    const Interruptible interruptible;
    Zn_Socket socket;
    if (socket.Connect(Zn_WString::FromUtf8(host), port, options.retries, kLinger) != 0)
        FailFor(options.where, "can't be reached", socket);
    SendMessage(socket, bytes, options.where);
    if (!options.answer.empty())
        Write(options.answer, ReceiveMessage(socket, options.timeout, options.where));
}

// The name of the n-th of several files: in-1.bin, in-2.bin.
std::string Numbered(const std::string& path, int number)
{
    const std::filesystem::path whole(path);
    const std::string name = whole.filename().string();
    const std::size_t point = name.find('.', 1);
    const std::string stem = name.substr(0, point);
    return (whole.parent_path() / (stem + "-" + std::to_string(number) + name.substr(stem.size()))).string();
}

[[noreturn]] void FailToListen(const ReceiveOptions& options, const Zn_Socket& listener)
{
    FailFor("port " + std::to_string(options.port), "can't be listened on", listener);
}

void Accept(Zn_Socket& listener, Zn_Socket& socket, std::string& label, const ReceiveOptions& options)
{
    Zn_WString peer;
    socket.Attach(static_cast<unsigned>(listener.Accept(peer)));
    if (socket.handle == Zn_Socket::kClosed)
        FailToListen(options, listener);
    label = peer.ToUtf8();
}

void ReceiveOne(Zn_Socket& socket, const std::string& label, const std::string& path, const Zn_Buffer& reply,
                const ReceiveOptions& options)
{
    const Zn_Buffer bytes = ReceiveMessage(socket, options.timeout, label);
    Write(path, bytes);
    Complain(label + ": " + std::to_string(bytes.GetLength()) + " bytes to " + FileLabel(path, true));
    if (!options.reply.empty())
        SendMessage(socket, reply, label);
}

void Receive(const ReceiveOptions& options, ExitCode& exitCode)
{
    constexpr std::uint32_t kLoopback = 0x7F000001;
    if (options.count != 1 && options.out == "-")
        throw Failure(BadUsage, "--count: several messages need a file name for OUT");
    const Zn_Buffer reply = options.reply.empty() ? Zn_Buffer() : ReadFile(options.reply);
    const Interruptible interruptible;
    Zn_Socket listener;
    if (listener.Create(options.port, options.local ? kLoopback : 0, kLinger) != 0)
        FailToListen(options, listener);
    Complain("listening on port " + std::to_string(listener.GetLocalPort()));
    for (int number = 1; number <= options.count || options.count == 0; ++number) {
        Zn_Socket socket;
        std::string label;
        Accept(listener, socket, label, options);
        try {
            ReceiveOne(socket, label, options.count == 1 ? options.out : Numbered(options.out, number), reply, options);
        } catch (const Failure& failure) { // of this sender; the next one may do better
            Complain(failure.what());
            exitCode = BadData;
        }
    }
}

void AddTimeout(CLI::App& command, int& timeout)
{
    command.add_option("--timeout", timeout, "give up when nothing comes for so many seconds (60; 0: never)")
        ->check(CLI::Range(0, 1'000'000).description(""))
        ->type_name("SECONDS");
}

} // namespace

void AddSend(CLI::App& app, ExitCode&)
{
    const auto options = std::make_shared<SendOptions>();
    CLI::App* command = app.add_subcommand("send", "Send a file as a message over a connection");
    command->add_option("HOST:PORT", options->where, "where somebody listens")->required();
    command->add_option("FILE", options->file, "the file to send, or -")->required();
    command->add_option("-a,--answer", options->answer, "wait for an answer and write it to this file, or -")
        ->type_name("OUT");
    command->add_option("--retries", options->retries, "connect up to so many times (1)")
        ->check(CLI::Range(1, 1'000'000).description(""))
        ->type_name("N");
    AddTimeout(*command, options->timeout);
    command->footer("The file goes as it stands, in frames of up to 1 MiB.\n"
                    "Example: zn send 127.0.0.1:5000 changes.bin --answer answer.bin");
    command->callback([options] { Send(*options); });
}

void AddReceive(CLI::App& app, ExitCode& exitCode)
{
    const auto options = std::make_shared<ReceiveOptions>();
    CLI::App* command = app.add_subcommand("receive", "Listen for a message and write it to a file");
    command->add_option("PORT", options->port, "where to listen; 0 is a port that the system chooses")
        ->required()
        ->check(CLI::Range(0, 65535).description(""));
    command->add_option("OUT", options->out, "the file to write (standard output)");
    command->add_option("--reply", options->reply, "send this file back")->type_name("FILE");
    command->add_option("--count", options->count, "as many messages, to OUT with a number (1; 0: until Ctrl-C)")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("N");
    command->add_flag("--local", options->local, "only from this machine");
    AddTimeout(*command, options->timeout);
    command->footer(
        "Each sender is heard for one message. The port is named on standard error. A file is written when its\n"
        "message is whole; Ctrl-C leaves none half written.\n"
        "Example: zn receive 5000 in.bin --local --reply answer.bin");
    command->callback([options, &exitCode] { Receive(*options, exitCode); });
}

} // namespace zntool
