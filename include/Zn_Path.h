// A path in its parts: drive, folder, file name and extension, and joined again.
//
//     Zn_Path path(u"C:/data/log.txt");   // "C", "/data", "log", "txt"
//     path.SetFileName(u"log.old");
//     path.GetFullPath();                 // "C:/data/log.old"
//
// It only splits and joins text and asks no file system. The separator is "/" alone, and the drive is whatever stands
// before the first colon: a path with backslashes is all folder. One object is used by one thread at a time.
#pragma once

#include "Zn_WString.h"

class ZN_API Zn_Path {
public:
    Zn_Path() noexcept = default;
    Zn_Path(const char16_t* text) { Set(text); }

    void Clear() noexcept;
    // Splits a path; null or empty text clears. Characters that the locale's code page lacks become what it writes for
    // them. Callers rely on it: a text without "/", such as "readme.txt", is all folder, without a file name.
    void Set(const char16_t* text);
    // Null or empty text changes nothing, in all four.
    void SetDrive(const char16_t* drive);
    // Replaces drive and folder: text without a colon takes the drive away.
    void SetPath(const char16_t* text);
    // Name and extension; text without a "." keeps the present extension, text with one at its end takes it away.
    void SetFileName(const char16_t* text);
    void SetFileExt(const char16_t* ext);

    // Without the colon.
    const Zn_WString& GetDrive() const noexcept { return drive_; }
    // Without the "/" before the file name.
    const Zn_WString& GetPath() const noexcept { return path_; }
    // Without the extension.
    const Zn_WString& GetFileName() const noexcept { return fileName_; }
    // Without the dot.
    const Zn_WString& GetFileExt() const noexcept { return fileExt_; }
    const Zn_WString& GetFullPath() const noexcept { return fullPath_; }
    // Drive and folder joined.
    Zn_WString GetPurePath() const;

protected:
    // Joins the parts. A file name always has a "/" before it, even when nothing else is there.
    void SetFullPath();

private:
    Zn_WString drive_;
    Zn_WString path_;
    Zn_WString fileName_;
    Zn_WString fileExt_;
    Zn_WString fullPath_;
};
