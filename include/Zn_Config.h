// Settings: sections of names with values, kept in a text file or a buffer.
//
//     Zn_Config config;
//     if (config.Load(u"/etc/client.ini") < 0) ...      // config.lastError says why
//     int port = config.GetItemNN(u"server", u"port").ToInteger();
//     config.SetItem(u"server", u"port", 5001);
//     config.SaveWithValues(nullptr);                   // to the file it came from
//
// Callers rely on it: Save writes names without their values. SaveWithValues writes them, and replaces the
// old file only when the new one is whole.
//
// Section names and entry names match without regard to case, look-ups find the first of several, and loading keeps
// entries that repeat a name. Counts and indexes are returned, -1 for failure; look-ups give null. One object is
// used by one thread at a time.
//
// The file form, in the locale's code page: "[section]" begins a section, or goes on with the first section of the file
// (not the one of that name) when the name was there before: callers rely on it. "name=value" is an entry of the
// present section. White space around names and values, lines that begin with # or //, lines without "=" and everything
// before the first section are skipped. A line of more than 1023 bytes is read as several.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_NamedStr.h"

class ZN_API Zn_ConfigSection : public Zn_NamedStrList {
public:
    Zn_WString id;

    // 0; -1 for null.
    int SetId(const char16_t* text);
    int SetId(const Zn_WString& text);
    // Id and entries; 0.
    int Assign(const Zn_ConfigSection& other);
    void Set(const Zn_ConfigSection& other) { Assign(other); }
    // Appends, also a second entry of that name; -1 for an empty name.
    int AddItem(const Zn_WString& name, const Zn_WString& value) { return AddStr(name, value, 0); }
    // 0 when the entry was there and has the value now; else the index of a new one.
    int SetItem(const Zn_WString& name, const Zn_WString& value);

    static void InitWithMemory(Zn_ConfigSection* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_ConfigSection* item) { Zn_FreeInPlace(item); }
};

class ZN_API Zn_ConfigSectionHandler final : public Zn_TypedHandler<Zn_ConfigSection> {
public:
    Zn_ConfigSectionHandler() noexcept : Zn_TypedHandler("Zn_ConfigSection", 32) {}
    // Ids without regard to case.
    int _CompareItem(void* a, void* b) override;
    static Zn_ConfigSectionHandler& Instance();
    static const Zn_ConfigSection& EmptyItem();
};

struct Zn_ConfigSectionIdOf {
    std::u16string_view operator()(const Zn_ConfigSection& item) const noexcept { return item.id.GetView(); }
};

class ZN_API Zn_ConfigSectionList : public Zn_IdList<Zn_ConfigSection, Zn_ConfigSectionHandler, Zn_ConfigSectionIdOf> {
public:
    using Base = Zn_IdList<Zn_ConfigSection, Zn_ConfigSectionHandler, Zn_ConfigSectionIdOf>;
    using Base::Base;

    void Clear() noexcept { ReleaseList(); }
    // The index of the new section; 0 when the name was there, whatever its index: callers rely on it. -1 for null.
    int AddSection(const char16_t* name);
    int AddSection(const Zn_WString& name);
    // Appends copies, of names that are there too; the count, 0 for null.
    int Append(const Zn_ConfigSectionList* other);
    // The entries of a section, or null.
    const Zn_NamedStrList* GetItems(int index) const noexcept { return GetItem(index); }
    Zn_NamedStrList* GetSafeItems(int index) noexcept { return GetSafeItem(index); }

    // The Windows error number of the last file that could not be read or written.
    int GetError() const noexcept { return error_; }

    // Replaces everything by what the file holds; the number of sections. Nothing is left when the file can't be read.
    int Load(const char16_t* path);
    // Writes sections and names, every value empty; the number of sections.
    int Save(const char16_t* path);
    enum SaveResult { CannotWrite = -1, CannotKeep = -2 };
    // Writes values too; the number of sections. First reads back what it would write: where that differs (line breaks,
    // white space at the ends, a name with "=", a character that the code page lacks, a line that is too long ...) it
    // writes nothing, gives CannotKeep and tells the place in refused: "[section]" or "[section] name". Until the file
    // is whole and on the disk the old one stays, whatever happens.
    int SaveWithValues(const char16_t* path, Zn_WString* refused = nullptr);

    // The binary form. Saving appends to the buffer, loading replaces everything by what the whole buffer holds; both
    // give the number of sections. A buffer that breaks off gives what is complete. Callers rely on it: an entry
    // is read up to a NUL, over as much as twice its length, so that one followed by a record of 65536 characters or
    // more takes in what comes next.
    int SaveToStream(Zn_Buffer& out) const;
    int LoadFromStream(const Zn_Buffer& in);

private:
    int Refuse(int error) noexcept;

    int error_ = 0;
};

class ZN_API Zn_Config : public Zn_ConfigSectionList {
public:
    Zn_Config() noexcept = default;
    // The sections; file name and last error stay behind.
    Zn_Config(const Zn_Config& other) : Zn_ConfigSectionList(other), reserved_(other.reserved_) {}
    Zn_Config& operator=(const Zn_Config& other)
    {
        Assign(other);
        return *this;
    }
    ~Zn_Config() = default;

    void Clear() noexcept;
    // Replaces the sections by copies; the count. The file name stays this object's own.
    int Assign(const Zn_Config& other);

    // Makes the section where it is missing. 0 when the entry was there and has the value now; else the index of a new
    // one.
    int SetItem(Zn_NameArg section, Zn_NameArg name, const Zn_WString& value);
    int SetItem(Zn_NameArg section, Zn_NameArg name, const char16_t* value);
    int SetItem(Zn_NameArg section, Zn_NameArg name, char16_t value);
    int SetItem(Zn_NameArg section, Zn_NameArg name, int value);
    int SetItem(Zn_NameArg section, Zn_NameArg name, long value)
    {
        return SetItem(section, name, static_cast<int>(value));
    }
    int SetItem(Zn_NameArg section, Zn_NameArg name, double value);

    int GetSectionCount() const noexcept { return Count(); }
    const Zn_ConfigSection* GetSection(Zn_NameArg name) const noexcept { return Base::GetItem(name); }
    const Zn_ConfigSection* GetSection(int index) const noexcept { return Base::GetItem(index); }
    Zn_ConfigSection* GetSafeSection(Zn_NameArg name) noexcept { return Base::GetSafeItem(name); }

    using Base::GetItem;
    using Base::GetItemNN;
    using Base::GetSafeItem;
    // A value, by section and entry.
    const Zn_WString* GetItem(Zn_NameArg section, Zn_NameArg name) const noexcept;
    const Zn_WString* GetItem(int section, int entry) const noexcept;
    // The shared empty text instead of null.
    const Zn_WString& GetItemNN(Zn_NameArg section, Zn_NameArg name) const noexcept;
    const Zn_WString& GetItemNN(int section, int entry) const noexcept;
    Zn_WString* GetSafeItem(Zn_NameArg section, Zn_NameArg name) noexcept;

    // The three give 0 always; where there is nothing of the name, or no new name, they do nothing.
    int ChangeSectionId(Zn_NameArg oldName, Zn_NameArg newName);
    int ChangeItemId(Zn_NameArg section, Zn_NameArg oldName, Zn_NameArg newName);
    int DelItem(Zn_NameArg section, Zn_NameArg name);
    // 1, or 0 when there is no such section.
    int DelSection(Zn_NameArg name);

    // As the list's; a failure is left in lastError, and Load remembers the path as the one to save to for null.
    int Load(const char16_t* path);
    int Save(const char16_t* path);
    int SaveWithValues(const char16_t* path, Zn_WString* refused = nullptr);
    const Zn_WString& GetFileName() const noexcept { return fileName_; }

protected:
    // For derived classes: Assign copies it, Clear resets it.
    int reserved_ = 0;

public:
    // A Windows error number.
    int lastError = 0;

private:
    int Keep(int result) noexcept;
    const char16_t* PathOr(const char16_t* path) const noexcept { return path ? path : fileName_.GetText(); }

    Zn_WString fileName_;
};
