#include "Zn_XmlDOM.h"

#include "Zn_CodePage.h"

#include "foundation/encoding.h"
#include "markup/attributes.h"
#include "markup/charset_declaration.h"
#include "markup/tokenizer.h"
#include "markup/xml_text.h"

// Builds the tree from what the tokenizer meets.
class Zn_XmlDOM::Builder {
public:
    using View = std::u16string_view;

    explicit Builder(Zn_XmlDOM& document) noexcept : keepText_(document.keepText_), list_(&document) {}

    void ProcInstr(View name, View attributes) { AddTag(Zn_DOMElement::ProcInstr, name, attributes); }
    void Declaration(View name, View body)
    {
        if (Zn_DOMElement* node = body.empty() ? nullptr : AddNode(Zn_DOMElement::Declaration)) {
            node->tag.Set(name);
            node->rawAttributes.Set(body);
        }
    }
    void EmptyElement(View name, View attributes) { AddTag(Zn_DOMElement::EmptyElement, name, attributes); }
    void StartElement(View name, View attributes)
    {
        // Callers rely on it: an element named xml is written back as a processing instruction.
        const int kind = name == u"xml" ? Zn_DOMElement::ProcInstr : Zn_DOMElement::Element;
        Zn_DOMElement* node = AddTag(kind, name, attributes);
        full_ = full_ || !open_.Push(list_);
        if (node)
            list_ = &node->children;
    }
    void EndElement(View)
    {
        if (!full_ && !open_.IsEmpty()) {
            list_ = open_.Top();
            open_.Pop();
        }
    }
    void WhiteSpace(View text)
    {
        if (keepText_)
            AddText(Zn_DOMElement::WhiteSpace, text);
    }
    void Text(View text)
    {
        if (Zn_DOMElement* node = AddNode(Zn_DOMElement::Text))
            node->text = zn::DecodedXml(text, &texts_);
    }
    void CData(View text) { AddText(Zn_DOMElement::CData, text); }
    void Comment(View text)
    {
        if (keepText_)
            AddText(Zn_DOMElement::Comment, text);
    }

private:
    Zn_DOMElement* AddNode(int kind)
    {
        Zn_DOMElement* node = full_ ? nullptr : list_->AppendNew();
        if (node)
            node->kind = kind;
        return node;
    }
    Zn_DOMElement* AddTag(int kind, View name, View attributes)
    {
        Zn_DOMElement* node = AddNode(kind);
        if (node) {
            node->tag = texts_.Of(name);
            if (!attributes.empty())
                zn::ReadAttributes(attributes, node->attributes, &texts_);
        }
        return node;
    }
    void AddText(int kind, View text)
    {
        if (Zn_DOMElement* node = text.empty() ? nullptr : AddNode(kind))
            node->text.Set(text);
    }

    bool keepText_;
    bool full_ = false;                   // memory ran out: nothing more is taken
    Zn_DOMElemList* list_;                // where new nodes go
    zn::WorkStack<Zn_DOMElemList*> open_; // the lists around it
    zn::SharedTexts texts_;
};

Zn_XmlDOM::Zn_XmlDOM(int parseContent, int parseAttributes, int keepText) noexcept : Zn_DOMElemList(ZnGetLocaleCP())
{
    parseContent_ = parseContent != 0;
    parseAttributes_ = parseAttributes != 0;
    keepText_ = keepText != 0;
}

int Zn_XmlDOM::Build(std::u16string_view text)
{
    Builder builder(*this);
    return zn::Tokenizer(builder).Parse(text) ? 1 : 0;
}

int Zn_XmlDOM::Load(const char16_t* text, int length)
{
    codePage_ = ZnGetLocaleCP();
    return Build(zn::ViewOfText(text, length));
}

int Zn_XmlDOM::Load(const char* text, int length, unsigned codePage)
{
    const std::string_view bytes = zn::ViewOfText(text, length);
    const zn::DeclaredEncoding declared = zn::FindDeclaredEncoding(bytes);
    if (declared.found)
        codePage_ = codePage = declared.codePage;
    return Build(zn::DecodeMarkup(bytes, codePage).GetView());
}

int Zn_XmlDOM::IsXML_A(const char* text, int length) noexcept
{
    const std::string_view head = zn::ViewOfText(text, length).substr(0, 10);
    const int place = zn::FindTag("?xml", head);
    return place >= 0 && head[static_cast<std::size_t>(place)] == '<' ? 1 : 0;
}

int Zn_XmlDOM::SetCharSet(unsigned codePage, int add)
{
    const std::string_view charset = zn_findcharset(codePage);
    const Zn_WString name(charset.data(), static_cast<int>(charset.size()), zn::kUtf8);
    if (Zn_DOMElement* declaration = GetSafeItem(FindTag(u"?xml"))) {
        declaration->attributes.AddStr(u"encoding", name, 1);
        return 1;
    }
    if (add) {
        Zn_DOMElement declaration(codePage_);
        declaration.kind = Zn_DOMElement::ProcInstr;
        declaration.tag = u"?xml";
        declaration.attributes.AddStr(u"version", u"1.0", 1);
        declaration.attributes.AddStr(u"encoding", name, 1);
        Insert(0, declaration);
    }
    return 0;
}

int Zn_XmlDOM::FindTag_A(const char* what, const char* text, int length) noexcept
{
    return zn::FindTag_A(what, text, length);
}

int Zn_XmlDOM::GetCharSet_A(const char* text, int length, Zn_AString& name)
{
    return zn::GetCharSet_A(text, length, name);
}
