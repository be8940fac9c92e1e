#include "Zn_MsgView.h"

namespace {

Zn_WString LineOf(const Zn_ErrorMsg& texts, unsigned codePage, int code, const Zn_WStrList& params)
{
    Zn_WString line;
    if (texts.GetText(codePage, line, code, params))
        return line;
    line.Format(u"0x%08X", static_cast<unsigned>(code));
    for (int i = 0; i < params.Count(); ++i) {
        line += i == 0 ? u": " : u", ";
        line += params.GetItemNN(i);
    }
    return line;
}

} // namespace

Zn_MsgView::Zn_MsgView(const Zn_Result& result, unsigned codePage) : Zn_MsgView(result, codePage, Zn_ErrorMsg()) {}

Zn_MsgView::Zn_MsgView(const Zn_Result& result, unsigned codePage, const Zn_ErrorMsg& texts)
{
    for (int i = 0; i < result.Count(); ++i) {
        const Zn_Message* message = result.GetMessageW(i);
        if (message && message->code != Zn_MessageList::kStartMark)
            lines_.Add(LineOf(texts, codePage, message->code, message->params));
    }
    if (result.Count() == 0 && result != 0)
        lines_.Add(LineOf(texts, codePage, result, Zn_WStrList()));
}

Zn_WString Zn_MsgView::GetText() const
{
    Zn_WString text;
    for (const Zn_WString& line : lines_) {
        text += line;
        text += u'\n';
    }
    return text;
}
