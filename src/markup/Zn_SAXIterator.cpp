#include "Zn_SAXIterator.h"

#include "markup/charset_declaration.h"
#include "markup/tokenizer.h"

Zn_SAXCtxHandler::~Zn_SAXCtxHandler() = default;

namespace {

// Hands what the tokenizer meets to the virtual operations.
class VirtualHandler {
public:
    using View = std::u16string_view;

    explicit VirtualHandler(Zn_SAXCtxHandler& handler) noexcept : handler_(handler) {}

    void ProcInstr(View name, View attributes)
    {
        handler_.OnProcInstr(name.data(), LengthOf(name), attributes.data(), LengthOf(attributes));
    }
    void Declaration(View name, View body)
    {
        handler_.OnDeclaration(name.data(), LengthOf(name), body.data(), LengthOf(body));
    }
    void EmptyElement(View name, View attributes)
    {
        handler_.OnEmptyElement(name.data(), LengthOf(name), attributes.data(), LengthOf(attributes));
    }
    void StartElement(View name, View attributes)
    {
        handler_.OnStartElement(name.data(), LengthOf(name), attributes.data(), LengthOf(attributes));
    }
    void EndElement(View name) { handler_.OnEndElement(name.data(), LengthOf(name)); }
    void WhiteSpace(View text) { handler_.OnWhiteSpace(text.data(), LengthOf(text)); }
    void Text(View text) { handler_.OnText(text.data(), LengthOf(text)); }
    void CData(View text) { handler_.OnCData(text.data(), LengthOf(text)); }
    void Comment(View text) { handler_.OnComment(text.data(), LengthOf(text)); }

private:
    static int LengthOf(View text) noexcept { return static_cast<int>(text.size()); }

    Zn_SAXCtxHandler& handler_;
};

} // namespace

int Zn_SAXIterator::Parse(const char16_t* text, int length)
{
    if (!handler_)
        return 0;
    VirtualHandler handler(*handler_);
    zn::Tokenizer tokenizer(handler);
    return tokenizer.Parse(zn::ViewOfText(text, length)) ? 1 : 0;
}

int Zn_SAXIterator::Parse(const char* text, int length, unsigned codePage)
{
    if (!handler_)
        return 0;
    const std::string_view bytes = zn::ViewOfText(text, length);
    const zn::DeclaredEncoding declared = zn::FindDeclaredEncoding(bytes);
    if (declared.found)
        handler_->OnCharSet(declared.codePage);
    const Zn_WString wide = zn::DecodeMarkup(bytes, declared.found ? declared.codePage : codePage);
    return Parse(wide.GetText(), wide.GetLength());
}

int Zn_SAXIterator::GetTagName(const char16_t* at, int length) noexcept
{
    return at && length > 0 ? static_cast<int>(zn::TagNameLength(at, at + length)) : 0;
}

int Zn_SAXIterator::FindBeginTagPos(const char16_t* at, int length, int& kind, int& skip) noexcept
{
    if (!at || length < 1)
        return -1;
    const zn::TagEnd found = zn::FindTagEnd(at, at + length, static_cast<zn::Markup>(kind));
    if (!found.at)
        return -1;
    kind = static_cast<int>(found.kind);
    skip = static_cast<int>(found.next - at);
    return static_cast<int>(found.at - at);
}

int Zn_SAXIterator::FindTag_A(const char* what, const char* text, int length) noexcept
{
    return zn::FindTag_A(what, text, length);
}

int Zn_SAXIterator::GetCharSet_A(const char* text, int length, Zn_AString& name)
{
    return zn::GetCharSet_A(text, length, name);
}
