#include "output.h"

#include "failure.h"
#include "terminal.h"

#include <cerrno>
#include <system_error>

namespace zntool {
namespace {

constexpr std::size_t kFlushAt = 1 << 16;

const char* CodeOf(Style style)
{
    switch (style) {
    case Style::Title:
        return "\033[1m";
    case Style::Faint:
        return "\033[2m";
    case Style::Inserted:
        return "\033[32m";
    case Style::Updated:
        return "\033[33m";
    case Style::Deleted:
        return "\033[31m";
    default:
        return "";
    }
}

} // namespace

Output::Output() : terminal_(zntool::IsTerminal(stdout)), colour_(WantsColour(stdout)) {}

Output::~Output()
{
    static_cast<void>(std::fwrite(pending_.data(), 1, pending_.size(), stdout));
    static_cast<void>(std::fflush(stdout));
}

void Output::Write(std::string_view text)
{
    pending_ += text;
    if (pending_.size() >= kFlushAt)
        Flush();
}

void Output::Write(std::string_view text, Style style)
{
    if (!colour_ || style == Style::Plain || text.empty())
        return Write(text);
    pending_ += CodeOf(style);
    pending_ += text;
    Write("\033[0m");
}

void Output::Flush()
{
    const std::string text = std::move(pending_);
    pending_.clear();
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure(BadData, "standard output: can't be written: " + std::generic_category().message(errno));
}

} // namespace zntool
