#include "attributes.h"

#include "name_values.h"
#include "xml_text.h"

#include "foundation/brace.h"

#include <utility>

namespace zn {

namespace {

using View = std::u16string_view;

Zn_WString MakeText(View text, SharedTexts* texts)
{
    return texts ? texts->MakeText(text) : Zn_WString(text);
}

Zn_WString MakeDecoded(View text, SharedTexts* texts)
{
    return text.find(u'&') == View::npos ? MakeText(text, texts) : DecodedXml(text);
}

// The pair is appended even when the name is there already: look-ups find the first.
void AddAttribute(Zn_NamedStrList& attributes, const NameValue& pair, SharedTexts* texts)
{
    if (pair.name.empty())
        return;
    // A name alone is not decoded; callers rely on it.
    const bool alone = pair.place == ValuePlace::None;
    Zn_WString name = alone ? MakeText(pair.name, texts) : MakeDecoded(pair.name, texts);
    Zn_WString value = MakeDecoded(WithoutBrace(pair.value, pair.place == ValuePlace::OwnToken), texts);
    if (void* place = attributes.Zn_ObjList::GetSafeItem(attributes.Count(), 1))
        *static_cast<Zn_NamedStr*>(place) = Zn_NamedStr(std::move(name), std::move(value));
}

} // namespace

void ReadAttributes(View text, Zn_NamedStrList& attributes, SharedTexts* texts)
{
    ReadNameValues(text, [&](const NameValue& pair) { AddAttribute(attributes, pair, texts); });
}

} // namespace zn
