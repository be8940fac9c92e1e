// What a program that includes the Windows headers before ours has defined by then: the function names that these
// headers turn into macros, and the short words they take. Only names, in the forms of those headers.
#pragma once

#define CompareString CompareStringW
#define CopyFile CopyFileW
#define CreateDirectory CreateDirectoryW
#define CreateEvent CreateEventW
#define CreateFile CreateFileW
#define CreateMutex CreateMutexW
#define CreateProcess CreateProcessW
#define CreateWindow CreateWindowW
#define DeleteFile DeleteFileW
#define DispatchMessage DispatchMessageW
#define DrawText DrawTextW
#define FindFirstFile FindFirstFileW
#define FindNextFile FindNextFileW
#define FindText FindTextW
#define FormatMessage FormatMessageW
#define GetClassName GetClassNameW
#define GetCommandLine GetCommandLineW
#define GetCurrentDirectory GetCurrentDirectoryW
#define GetCurrentTime() GetTickCount()
#define GetDateFormat GetDateFormatW
#define GetDiskFreeSpace GetDiskFreeSpaceW
#define GetDriveType GetDriveTypeW
#define GetFileAttributes GetFileAttributesW
#define GetFirstChild(window) GetTopWindow(window)
#define GetFirstSibling(window) GetWindow(window, 0)
#define GetFreeSpace(flags) (0x100000L)
#define GetFullPathName GetFullPathNameW
#define GetLastSibling(window) GetWindow(window, 1)
#define GetMessage GetMessageW
#define GetNextSibling(window) GetWindow(window, 2)
#define GetObject GetObjectW
#define GetPrevSibling(window) GetWindow(window, 3)
#define GetProp GetPropW
#define GetTempFileName GetTempFileNameW
#define GetTempPath GetTempPathW
#define GetTimeFormat GetTimeFormatW
#define GetUserName GetUserNameW
#define GetVersionEx GetVersionExW
#define GetWindowText GetWindowTextW
#define IsMaximized(window) IsZoomed(window)
#define IsMinimized(window) IsIconic(window)
#define LoadLibrary LoadLibraryW
#define LoadString LoadStringW
#define MoveFile MoveFileW
#define PostMessage PostMessageW
#define RegisterClass RegisterClassW
#define RemoveDirectory RemoveDirectoryW
#define ReplaceText ReplaceTextW
#define SendMessage SendMessageW
#define SetCurrentDirectory SetCurrentDirectoryW
#define SetFileAttributes SetFileAttributesW
#define SetProp SetPropW
#define SetWindowText SetWindowTextW
#define StartDoc StartDocW
#define Yield()

#define ABSOLUTE 1
#define ALTERNATE 1
#define CALLBACK
#define CONST const
#define DELETE (0x00010000L)
#define DOMAIN 1
#define ERROR 0
#define FALSE 0
#define IGNORE 0
#define IN
#define INFINITE 0xFFFFFFFF
#define NO_ERROR 0L
#define OPAQUE 2
#define OPTIONAL
#define OUT
#define OVERFLOW 3
#define PASCAL
#define RELATIVE 2
#define STRICT 1
#define THIS void
#define TRANSPARENT 1
#define TRUE 1
#define UNDERFLOW 4
#define VOID void
#define WINDING 2
#define cdecl
#define far
#define hyper
#define interface struct
#define near
#define pascal
#define small char
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
