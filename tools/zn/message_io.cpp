#include "message_io.h"

#include "cell_text.h"
#include "container.h"
#include "failure.h"
#include "losses.h"
#include "progress.h"
#include "xml_check.h"

#include "Zn_CodePage.h"

#include <algorithm>
#include <cstring>

namespace zntool {
namespace {

constexpr unsigned kUtf16 = 1200;

// Makes a page the locale's, in which the binary form has parameters and column names, for as long as it lives.
class LocaleCodePage {
public:
    explicit LocaleCodePage(unsigned codePage) : before_(ZnGetLocaleCP()) { ZnSetLocaleCP(codePage); }
    LocaleCodePage(const LocaleCodePage&) = delete;
    LocaleCodePage& operator=(const LocaleCodePage&) = delete;
    ~LocaleCodePage() { ZnSetLocaleCP(before_); }

private:
    unsigned before_;
};

unsigned ReadWord(const Zn_Buffer& bytes, int offset)
{
    return static_cast<unsigned>(bytes.GetAt(offset) << 8 | bytes.GetAt(offset + 1));
}

bool LooksLikeXml(const Zn_Buffer& bytes)
{
    const std::string_view text = WithoutMark(AsText(bytes));
    const std::size_t first = text.find_first_not_of(" \t\r\n\v\f");
    return first != std::string_view::npos && text[first] == '<';
}

bool LooksBinary(const Zn_Buffer& bytes)
{
    return bytes.GetLength() >= 4 && ReadWord(bytes, 2) == 0xFF10;
}

// The code page that all tables agree on, or 0.
unsigned CommonCodePage(const Zn_DatasetList& tables)
{
    const unsigned first = tables.GetItemNN(0)->GetCurrentCodePage();
    const auto same = [first](const Zn_Dataset& table) { return table.GetCurrentCodePage() == first; };
    return tables.Count() > 0 && std::all_of(tables.begin(), tables.end(), same) ? first : 0;
}

// The code page of the sender's locale, in which parameters and column names are written and which the message does
// not name: the first table's, unless only the own locale's gives the bytes of the parameters back.
unsigned SenderCodePage(const Zn_Buffer& bytes, int end)
{
    const unsigned own = ZnGetLocaleCP();
    const unsigned first =
        ReadWord(bytes, end) == 0xFF01 ? ReadWord(bytes, end + 4) << 16 | ReadWord(bytes, end + 6) : own;
    const auto givesBack = [&](unsigned codePage) {
        Zn_VariableList params;
        Zn_Buffer again;
        params.Load(bytes, 2, codePage);
        params.Save(again, codePage);
        return again.GetLength() == end - 2 &&
               std::memcmp(again.GetData(), bytes.GetData() + 2, again.GetSpan().size()) == 0;
    };
    return *zn_findcharset(first) && (givesBack(first) || !givesBack(own)) ? zn_activecodepage(first) : own;
}

// Reads the tables from pos to length; what fails becomes the message's damage.
void ReadTables(const Zn_Buffer& bytes, int pos, int length, Message& message, Progress& progress)
{
    for (int i = 0; pos < length && message.damage.empty(); ++i) {
        const std::string place = "byte " + std::to_string(pos) + ": table " + std::to_string(i + 1);
        Zn_Dataset* table = message.tables.GetSafeItem(i, 1);
        if (!table)
            throw Failure(BadData, message.label + ": " + place + " can't be held: out of memory");
        const int next = table->Load(bytes, pos);
        if (next <= pos) {
            message.damage = place + " is none, or holds a value that can't be read";
            message.tables.Delete(i);
        } else if (next > length) {
            message.damage = place + " (" + ToUtf8(table->GetId().GetView()) + ") breaks off at the end of the data";
        }
        message.tableBytes.push_back(std::min(next, length) - pos);
        progress.Set(pos = next, length);
    }
}

void ReadBinary(Zn_Buffer& bytes, Message& message, Progress& progress)
{
    // The library takes data that is cut short for what there is of it. One byte more than the message has, and a
    // reader that arrives at its far side instead of the message's end tells the difference.
    const int length = bytes.GetLength();
    unsigned char* data = bytes.GetSafeBuffer(length + 1);
    if (!data)
        throw Failure(BadData, message.label + ": can't be read: out of memory");
    data[length] = 0xFF;

    message.encoding = Encoding::Binary;
    message.knowsPlaces = true;
    const unsigned header = ReadWord(bytes, 0);
    if (header == 0)
        throw Failure(BadData, message.label + ": byte 0: the count of tables is zero, which no message has");
    const int end = message.params.Load(bytes, 2, 0);
    message.paramCodePage = SenderCodePage(bytes, end);
    const LocaleCodePage locale(message.paramCodePage);
    if (message.params.Load(bytes, 2, 0) < 0)
        throw Failure(BadData, message.label + ": byte 2: the parameters hold a value that can't be read");
    if (end > length)
        message.damage = "byte 2: the parameters break off at the end of the data";
    ReadTables(bytes, end, length, message, progress);
    message.codePage = CommonCodePage(message.tables);
    const int announced = static_cast<int>(header) - 1;
    if (message.damage.empty() && announced != message.tables.Count())
        message.note = "byte 0: " + std::to_string(announced) + " tables are announced, " +
                       std::to_string(message.tables.Count()) + " are there";
}

void ReadXml(const Zn_Buffer& bytes, Message& message, Progress& progress)
{
    message.encoding = Encoding::Xml;
    message.charset = DeclaredCharset(bytes);
    if (!message.charset.IsEmpty() && zn_findcodepageW(message.charset) == 0)
        throw Failure(BadData, message.label + ": line 1: the encoding '" + message.charset.ToUtf8() + "' is unknown");
    if (zn_findcodepageW(message.charset) == kUtf16)
        throw Failure(BadData,
                      message.label + ": line 1: a message in UTF-16 can't be read; convert it to UTF-8 first");
    const int count = ZnXmlStreamLoad(message.params, message.tables, bytes, message.codePage);
    for (int i = 0; i < message.tables.Count(); ++i)
        message.tables.GetSafeItem(i)->Change2CodePage(message.codePage);
    message.paramCodePage = message.codePage;
    message.damage = FindXmlFault(bytes, message.codePage, progress);
    if (count < 0)
        throw Failure(BadData, message.label + ": " +
                                   (message.damage.empty() ? "no message: there is no <root>, or nothing is in it"
                                                           : message.damage));
    message.tableBytes = DatasetBytes(bytes);
    const long long doubled = static_cast<long long>(message.tableBytes.size()) - count;
    if (message.damage.empty() && doubled > 0)
        message.note = Counted(doubled, "table") + " with the name of a later one, which takes the place";
    if (doubled != 0)
        message.tableBytes.clear();
}

// Gives the message the page it is to be written in.
void SetOutputCodePage(Message& message, Encoding encoding, unsigned wish)
{
    if (wish == kUtf16 || (wish != 0 && !*zn_findcharset(wish)))
        throw Failure(BadUsage, "--code-page " + std::to_string(wish) +
                                    (wish == kUtf16 ? ": messages are 8-bit text, take 65001" : ": unknown code page"));
    if (wish != 0 && wish != message.codePage) {
        message.charset.Empty();
        message.codePage = message.paramCodePage = wish;
        for (int i = 0; i < message.tables.Count(); ++i)
            message.tables.GetSafeItem(i)->Change2CodePage(wish);
    }
    if (encoding == Encoding::Xml && (message.codePage == 0 || !*zn_findcharset(message.codePage)))
        message.codePage = kUtf8;
}

Zn_Buffer Encode(Message& message, Encoding encoding, int mode)
{
    Zn_Buffer out;
    if (encoding == Encoding::Xml) {
        const char16_t* charset = message.charset.IsEmpty() ? nullptr : message.charset.GetText();
        ZnXmlStreamSave(message.params, message.tables, out, message.codePage, charset, mode);
    } else {
        const LocaleCodePage locale(message.paramCodePage);
        ZnBinStreamSave(message.params, message.tables, out, mode);
    }
    if (out.GetLength() <= 0)
        throw Failure(BadData, message.label + ": can't be encoded: out of memory, or more than 2 GiB");
    return out;
}

} // namespace

Message ReadMessage(const std::string& path)
{
    Message message;
    message.label = FileLabel(path);
    {
        Progress progress("reading " + message.label);
        Zn_Buffer bytes = ReadRestored(path, message.compressedBytes);
        message.bytes = bytes.GetLength();
        if (LooksBinary(bytes))
            ReadBinary(bytes, message, progress);
        else if (LooksLikeXml(bytes))
            ReadXml(bytes, message, progress);
        else if (LooksCompressed(bytes))
            throw Failure(BadData, message.label + ": is damaged: the checksum in it is not that of its bytes");
        else
            throw Failure(BadData, message.label + ": byte 0: neither an XML message nor a binary one");
    }
    if (!message.note.empty())
        Complain(message.label + ": " + message.note);
    return message;
}

Message ReadWholeMessage(const std::string& path)
{
    Message message = ReadMessage(path);
    if (!message.damage.empty())
        throw Failure(BadData, message.label + ": " + message.damage);
    return message;
}

Zn_Dataset& FindTable(Message& message, std::string_view name)
{
    Zn_WString id;
    Zn_Dataset* table = FromUtf8(name, id) ? message.tables.GetSafeItem(id.GetText()) : nullptr;
    if (!table)
        throw Failure(BadUsage, message.label + ": there is no table '" + std::string(name) +
                                    "' (there is: " + TableNames(message) + ")");
    return *table;
}

std::string TableNames(const Message& message)
{
    std::string names;
    for (const Zn_Dataset& table : message.tables)
        names += (names.empty() ? "" : ", ") + ToUtf8(table.GetId().GetView());
    return names.empty() ? "none" : names;
}

Encoding OutputEncoding(const std::string& path, const OutputWishes& wishes, std::optional<Encoding> otherwise)
{
    if (wishes.encoding)
        return *wishes.encoding;
    for (const auto& [extension, encoding] :
         {std::pair(".xml", Encoding::Xml), std::pair(".bin", Encoding::Binary), std::pair(".csv", Encoding::Csv)}) {
        if (HasExtension(FormName(path), extension))
            return encoding;
    }
    if (!otherwise)
        throw Failure(BadUsage,
                      FileLabel(path, true) + ": the name does not tell the form to write; say --to xml, bin or csv");
    return *otherwise;
}

void WriteMessage(Message& message, const std::string& path, const OutputWishes& wishes)
{
    const Encoding encoding = OutputEncoding(path, wishes, message.encoding);
    const std::string label = FileLabel(path, true);
    if (encoding == Encoding::Csv)
        throw Failure(BadUsage, label + ": CSV is written by zn convert alone");
    SetOutputCodePage(message, encoding, wishes.codePage);
    const Losses losses = FindLosses(message, encoding, wishes.mode);
    if (!losses.unreadable.empty())
        throw Failure(BadData, label + ": " + losses.unreadable);
    {
        const Progress progress("writing " + label);
        Zn_Buffer out = Encode(message, encoding, wishes.mode);
        if (wishes.compress.value_or(IsNamedCompressed(path) || message.compressedBytes > 0))
            out = Compressed(out);
        WriteFile(path, AsText(out));
    }
    for (std::string line : losses.lines)
        Complain(line.insert(0, ": ").insert(0, label));
}

} // namespace zntool
