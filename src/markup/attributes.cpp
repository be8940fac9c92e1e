#include "attributes.h"

#include "name_values.h"
#include "xml_text.h"

#include "foundation/brace.h"

#include <utility>

namespace zn {

namespace {

// The pair is appended even when the name is there already: look-ups find the first.
void AddAttribute(Zn_NamedStrList& attributes, const NameValue& pair, SharedTexts* texts)
{
    if (pair.name.empty())
        return;
    // A name alone is not decoded; callers rely on it.
    Zn_WString name = pair.place == ValuePlace::None ? Zn_WString(pair.name) : DecodedXml(pair.name, texts);
    Zn_WString value = DecodedXml(WithoutBrace(pair.value, pair.place == ValuePlace::OwnToken), texts);
    if (void* place = attributes.Zn_ObjList::GetSafeItem(attributes.Count(), 1))
        *static_cast<Zn_NamedStr*>(place) = Zn_NamedStr(std::move(name), std::move(value));
}

} // namespace

void ReadAttributes(std::u16string_view text, Zn_NamedStrList& attributes, SharedTexts* texts)
{
    ReadNameValues(text, [&](const NameValue& pair) { AddAttribute(attributes, pair, texts); });
}

} // namespace zn
