// Standard output: collected into large writes, coloured where it is a terminal and NO_COLOR is not set.
#pragma once

#include <string>
#include <string_view>

namespace zntool {

enum class Style { Plain, Title, Faint, Inserted, Updated, Deleted };

class Output {
public:
    Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

    void Write(std::string_view text);
    void Write(std::string_view text, Style style);
    // Fails when the stream can't take what was written.
    void Flush();
    bool IsTerminal() const { return terminal_; }

private:
    std::string pending_;
    bool terminal_;
    bool colour_;
};

} // namespace zntool
