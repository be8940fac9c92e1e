// A page, as bytes and as wide text with every setting of the three flags: it is read and written, and what is written
// is read again. The first byte chooses the flags.
#include "fuzz.h"

#include "Zn_HtmlDOM.h"

namespace {

// The nodes of two levels: those below know the ones above.
void CheckParents(const Zn_DOMElemList& nodes)
{
    for (const Zn_DOMElement& node : nodes) {
        for (const Zn_DOMElement& child : node.children)
            Require(child.GetParent() == &node);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const int flags = data[0];
    const char* bytes = reinterpret_cast<const char*>(data) + 1;
    const int length = static_cast<int>(size) - 1;

    Zn_HtmlDOM page(flags & 1, flags & 2, flags & 4);
    const Zn_WString text(bytes, length, 65001);
    const int whole = page.Load(text.GetText(), text.GetLength());
    Require(whole == 0 || whole == 1);
    CheckParents(page);

    Zn_Buffer out;
    page.Save(out, flags & 8, 0, flags & 16);
    Zn_HtmlDOM again(flags & 1, flags & 2, flags & 4);
    again.Load(reinterpret_cast<const char*>(out.GetData()), out.GetLength(), 65001);

    Zn_HtmlDOM fromBytes;
    fromBytes.Load(bytes, length, 1252);
    fromBytes.SetCharSet(949, 1);
    return 0;
}
