// A file: opened by mode letters or flags, read, written and moved in; and whole files by their names.
//
//     Zn_File file;
//     if (file.Open(u"\\data\\log.txt", "a") < 0 || file.Seek(0, Zn_File::End) < 0)
//         return file.lastError;               // a Windows error number on every platform
//     file.Write("line\n", 5, 0);
//
// Paths. A backslash or "/" at the start, or a drive, makes a path that stands for itself; "http://" and "ftp://" are
// told apart and never opened; any other path is resolved against the work path of the process, and without one can't
// be opened. Off Windows both slashes separate folders, and names are in the locale's code page: a name that it has no
// bytes for fails with 123.
//
// Failures give -1 and leave the error number in lastError: 123 no path or none that the system can have, 87 a wrong
// mode or argument, 50 a URL or a relative path without a work path, 32 another writer has the file, 2, 3, 5, 80,
// 112 and so on from the system. Sizes and positions are computed in 64 bits and returned as their low 32. The object
// closes its file at its end; one object is used by one thread at a time, the static functions by any.
#pragma once

#include "Zn_AString.h"
#include "Zn_Buffer.h"
#include "Zn_WString.h"

class ZN_API Zn_File {
public:
    enum OpenFlag {
        OpenRead = 0x0001,     // "r", "+"
        OpenWrite = 0x0002,    // "+", "w", "a"
        OpenKeep = 0x0010,     // "a": opens or creates, keeps the contents
        OpenTruncate = 0x0020, // "w": empties or creates
        OpenText = 0x0100,     // "t", no effect
        OpenBinary = 0x0200,   // "b", no effect
        OpenAppend = 0x1000,   // "w", "a", no effect: callers rely on it that "a" does not go to the end
    };
    enum PathKind { NoPath = -1, LocalPath = 0, SlashPath = 1, HttpPath = 2, FtpPath = 3 };
    enum Seek_Op { Begin = 0, Current = 1, End = 2 };

    Zn_File() noexcept = default;
    explicit Zn_File(int) noexcept {}
    // A copy is closed.
    Zn_File(const Zn_File&) noexcept {}
    Zn_File& operator=(const Zn_File&) = delete;
    Zn_File(const char16_t* path, int flags);
    virtual ~Zn_File();

    // Copies the work path of the process into this object; null when there is none.
    virtual const char16_t* GetWorkPath();
    // Tells the kind of a path, for a relative one resolves it, and looks whether it leads to anything. The kind that
    // is passed in says how a relative path is taken: 1 or 2 with "/" between folders, -1 not at all, anything else as
    // a local path with backslashes. Of leading "../" one level is resolved, since callers rely on the rest being left.
    // Returns the kind, or -1 for no path, no work path, and a path that leads nowhere (kind and resolved are set
    // nonetheless).
    virtual int CheckPath(const char16_t* path, int& kind, Zn_WString& resolved);
    // Closes what is open, then opens. 0, or 1 when another writer has the file (error 32) and retryReadOnly let it be
    // opened for reading alone. Write access alone, without one of OpenKeep and OpenTruncate, makes a new file and
    // fails with 80 on one that is there: callers rely on it, for "r+" too.
    virtual int Open(const char16_t* path, int flags, int retryReadOnly);
    // One to three of the letters r w a t b, with + in any place but the first; "w" not with "a", "t" not with "b".
    virtual int Open(const char16_t* path, const char* mode);
    virtual void Close();
    // Writes all of data and waits until the disk has it; gather small pieces first. Returns length. No write goes on
    // behind the call, so the time-out has no effect.
    virtual int Write(const char* data, int length, int timeoutMs);
    // Reads up to length bytes and puts a terminator behind them: the buffer holds length + 1. Fewer come only at the
    // end of the file. Returns how many, in length too; the last argument has no effect.
    virtual int Read(char* buffer, int& length, int reserved);
    // The new position, its low 32 bits: beyond 2 GiB the sign says nothing.
    virtual int Seek(int offset, Seek_Op origin);
    // Takes the calling thread's last system error as lastError; -1.
    virtual int _file_error();
    // 0 when closed; low 32 bits.
    virtual int GetSize();
    // The local time of the last write to a file, this one for null; 0 on failure.
    virtual int GetFileDate(FILETIME& out, void* handle);

    bool IsOpen() const noexcept { return handle_ != NoHandle(); }
    // The platform's own, all bits set when closed.
    void* GetHandle() const noexcept { return handle_; }

    // What relative paths are put behind, as it stands: end it with a separator. Null or empty for none, as at the
    // start.
    static void SetWorkPath(const char16_t* path);

    // The static functions take paths as they stand, without work path and URLs. They leave the reason of a failure
    // with zn_getlasterror.

    // 1, or 0.
    static int Delete(const char16_t* path);
    // Whether the file can be opened for reading; a folder can't.
    static int IsExist(const char16_t* path);
    // Low 32 bits; 0 when it can't be opened.
    static int GetFileSize(const char16_t* path);
    static int GetFileSize(void* handle);
    static int GetFileLinkCnt(void* handle);
    // Makes a folder and those above it that are missing: 0, or 0x80004005. Callers rely on it that one that is there
    // gives the error, but 0 when its path has no separator.
    static int MakeDir(const char16_t* path);

    // The whole file, as wide text from the locale's code page or, where it begins with their mark, from UTF-8 or
    // UTF-16. Returns the length of out; -1, and out stays, when the file can't be read or has 2 GiB or more (223).
    // The diagnostic names file and reason.
    static int ReadFile(const char16_t* path, Zn_WString& out, Zn_WString* diagnostic = nullptr);
    static int ReadFile(const char16_t* path, Zn_AString& out, Zn_WString* diagnostic = nullptr);
    static int ReadFile(const char16_t* path, Zn_Buffer& out, Zn_WString* diagnostic = nullptr);
    // Makes the text (length -1: up to its terminator) the content of a file, new or not, wide text in the locale's
    // code page. Returns the bytes written; -1, and the file may hold a part, on failure.
    static int WriteFile(const char16_t* path, const char16_t* text, int length);
    static int WriteFile(const char16_t* path, const char* text, int length);

private:
    static void* NoHandle() noexcept { return reinterpret_cast<void*>(~std::uintptr_t{0}); }
    int Refuse(int error) noexcept;
    int Resolve(const Zn_WString& path, int& kind, Zn_WString& resolved);

    void* handle_ = NoHandle();

public:
    int lastError = 0;
    // The resolved path of the file that was opened last.
    Zn_WString fileName;

private:
    Zn_WString workPath_;
    std::uint32_t access_ = 0;
    std::uint32_t share_ = 0;
    std::uint32_t disposition_ = 0;

public:
    // What CheckPath made of the path of the last Open.
    int pathKind = 0;
};
