// Folders: whether one is there, made, removed and listed.
//
//     Zn_WStrList names;
//     if (Zn_Dir::GetList(u"/data", names, u"txt") < 0) ...   // none, or no such folder
//
// Paths are taken as they stand, by the rules of Zn_File.h. The reason of a failure is left with
// zn_getlasterror. Any thread may call.
#pragma once

#include "Zn_StrList.h"

class ZN_API Zn_Dir {
public:
    Zn_Dir() noexcept = default;
    virtual ~Zn_Dir();

    // 1 for a folder; 0 for a file and for nothing.
    static int IsExist(const char16_t* path);
    static int IsDir(const char16_t* path) { return IsExist(path); }
    // 0, or 1 on failure: the folder above is missing (3), something of the name is there (183). See Zn_File::MakeDir.
    static int MakeDir(const char16_t* path);
    // Removes an empty folder; 0, or 1 on failure.
    static int DelDir(const char16_t* path);
    // Moves nothing and answers 1, always: callers rely on it.
    static int MoveDir(const char16_t* from, const char16_t* to);
    // Appends the names of the files and folders in a folder that match "*." and ext, "*.*" (everything) for null, in
    // the system's order. Case is ignored on every platform; * and ? in ext have their usual meaning, and an empty ext
    // stands for names without a dot. Returns the count of all names in the list; -1 when there is no match, no such
    // folder, or its reading broke off.
    static int GetList(const char16_t* dir, Zn_WStrList& names, const char16_t* ext);
};
