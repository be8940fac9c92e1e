// A file that is open as long as this object lives.
#pragma once

#include "platform/files.h"
#include "system/native_path.h"

namespace zn {

class OpenedFile {
public:
    static OpenedFile ToRead(const char16_t* path)
    {
        return {path, platform::kRead, platform::kShareRead | platform::kShareWrite, platform::kOpenExisting};
    }
    // Empties a file that is there.
    static OpenedFile ToWrite(const char16_t* path)
    {
        return {path, platform::kWrite, platform::kShareRead, platform::kCreateAlways};
    }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile()
    {
        if (IsOpen())
            platform::CloseFile(handle_);
    }

    bool IsOpen() const noexcept { return handle_ != platform::NoFile(); }
    platform::FileHandle Get() const noexcept { return handle_; }

private:
    OpenedFile(const char16_t* path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition)
        : handle_(platform::OpenFile(NativePath(path), access, share, disposition))
    {
    }

    platform::FileHandle handle_;
};

} // namespace zn
