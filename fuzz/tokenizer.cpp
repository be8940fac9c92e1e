// Markup text, as 8-bit and as wide text: every piece that is reported lies inside the text, and elements nest.
#include "fuzz.h"

#include "Zn_SAXIterator.h"
#include "Zn_XmlDOM.h"

namespace {

class Watcher final : public Zn_SAXCtxHandler {
public:
    int depth = 0;

    // Pieces come in the order of the text; nothing behind the end of it is reported.
    void Within(std::u16string_view text) { text_ = text; }

    int OnCharSet(unsigned) override { return 1; }
    int OnProcInstr(const char16_t* name, int nameLength, const char16_t* attributes, int length) override
    {
        return Tag(name, nameLength, attributes, length);
    }
    int OnDeclaration(const char16_t* name, int nameLength, const char16_t* body, int length) override
    {
        return Tag(name, nameLength, body, length);
    }
    int OnEmptyElement(const char16_t* name, int nameLength, const char16_t* attributes, int length) override
    {
        return Tag(name, nameLength, attributes, length);
    }
    int OnStartElement(const char16_t* name, int nameLength, const char16_t* attributes, int length) override
    {
        ++depth;
        return Tag(name, nameLength, attributes, length);
    }
    int OnEndElement(const char16_t*, int) override
    {
        Require(--depth >= 0);
        return 1;
    }
    int OnWhiteSpace(const char16_t* text, int length) override { return Piece(text, length); }
    int OnText(const char16_t* text, int length) override { return Piece(text, length); }
    int OnCData(const char16_t* text, int length) override { return Piece(text, length); }
    int OnComment(const char16_t* text, int length) override { return Piece(text, length); }

private:
    int Tag(const char16_t* name, int nameLength, const char16_t* attributes, int length)
    {
        Require((attributes == nullptr) == (length == 0));
        return Piece(name, nameLength) + Piece(attributes, length);
    }
    int Piece(const char16_t* text, int length) const
    {
        Require(length >= 0);
        if (!text_.empty() && length > 0)
            Require(text >= text_.data() && text + length <= text_.data() + text_.size());
        return 1;
    }

    std::u16string_view text_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const int length = static_cast<int>(size);
    Watcher watcher;
    if (Zn_SAXIterator(&watcher).Parse(bytes, length, 65001))
        Require(watcher.depth == 0);

    const Zn_WString text(bytes, length, 65001);
    Watcher wide;
    wide.Within(text.GetView());
    const int whole = Zn_SAXIterator(&wide).Parse(text.GetText(), text.GetLength());
    Zn_XmlDOM document(1, 1, 1);
    Require(document.Load(text.GetText(), text.GetLength()) == whole);
    Zn_Buffer out;
    document.Save(out, 1, 1, 0);
    return 0;
}
