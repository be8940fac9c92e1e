// The text forms of a result.
#include "Zn_Result.h"

namespace {

// Backslashes doubled, double quotes behind a backslash.
Zn_WString Escaped(const Zn_WString& text)
{
    Zn_WString out(text);
    out.Replace(u"\\", u"\\\\");
    out.Replace(u"\"", u"\\\"");
    return out;
}

} // namespace

int Zn_Result::Save(Zn_AString& out, unsigned codePage) const
{
    out.Empty();
    for (int i = 0; i < Count(); ++i) {
        const Zn_Message* message = GetMessageW(i);
        if (!message)
            continue;
        if (!out.IsEmpty())
            out += '\n';
        Zn_AString head;
        out += head.Format(R"("","0","0","0","0","0","%ld"%s)", static_cast<long>(message->code),
                           message->params.Count() > 0 ? "," : "");
        for (const Zn_WString& param : message->params) {
            out += '"';
            out += Zn_AString(param, param.GetLength(), codePage);
            out += R"(""",)"; // the closing quote, and what ends every parameter; callers rely on it
        }
    }
    return out.GetLength();
}

int Zn_Result::Load(const char* text, int clearFirst, unsigned codePage)
{
    constexpr int kCodeField = 6;
    if (clearFirst)
        Clear();
    Zn_AStrList lines;
    lines.Parse(text, "\r\n", '\\');
    for (const Zn_AString& line : lines) {
        const bool endsOpen = line.GetView().ends_with(','); // as Save leaves it: no field follows
        Zn_AStrList fields;
        fields.Parse(line.GetText(), ",", '\\', 0, 0, 1, 1);
        if (fields.Count() <= kCodeField)
            continue;
        Zn_Message message;
        message.code = fields.GetItemNN(kCodeField).ToInteger();
        for (int i = kCodeField + 1; i < fields.Count(); ++i) {
            const Zn_AString& field = fields.GetItemNN(i);
            if (endsOpen && i + 1 == fields.Count() && field.IsEmpty())
                break;
            message.params.Add(Zn_WString(field, field.GetLength(), codePage));
        }
        if (Zn_MessageList* list = MakeList())
            list->Add(message);
    }
    return Count();
}

Zn_WString Zn_Result::GetMessageStr() const
{
    Zn_AString out;
    for (int i = 0; i < Count(); ++i) {
        const Zn_Message* message = GetMessageW(i);
        if (!message)
            continue;
        Zn_AString head;
        out += head.Format(R"("0x%x","%d")", static_cast<unsigned>(message->code), message->params.Count());
        for (const Zn_WString& param : message->params) {
            const Zn_WString escaped = Escaped(param);
            out += ",\"";
            out += Zn_AString(escaped, escaped.GetLength(), 0);
            out += '"';
        }
        out += '\n';
    }
    return Zn_WString(out, out.GetLength(), 0);
}

Zn_WString Zn_Result::GetMessageStr(int index, [[maybe_unused]] unsigned codePage) const
{
    const Zn_Message* message = GetMessageW(index);
    if (!message)
        return Zn_WString(u"No Message");
    Zn_WString out;
    for (int i = 0; i < message->params.Count(); ++i) {
        if (i > 0)
            out += u',';
        out += Escaped(message->params.GetItemNN(i));
    }
    return out;
}

Zn_WString Zn_Result::GetMsgWithFormat(unsigned codePage) const
{
    Zn_WString out;
    for (int i = 0; i < Count(); ++i) {
        const Zn_Message* message = GetMessageW(i);
        if (!message) {
            out += u'\n';
            continue;
        }
        Zn_WString line;
        out += line.Format(u"\"%d\",\"%d\",\"%hs\",\"%d\",\"%s\"\n", message->code, message->GetTime(),
                           message->GetSource().GetText(), message->GetLine(), GetMessageStr(i, codePage).GetText());
    }
    return out;
}

Zn_WString Zn_Result::GetLastMsg() const
{
    return messages_ ? GetMessageStr(Count() - 1, 0) : Zn_WString();
}
