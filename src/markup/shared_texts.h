// Texts that recur in a document - names of tags and attributes, short values, line ends - made once and shared.
#pragma once

#include "Zn_WString.h"

#include <array>
#include <string_view>

namespace zn {

// Remembers the texts last asked for, so that equal ones mostly share their body.
class SharedTexts {
public:
    const Zn_WString& Of(std::u16string_view text)
    {
        Zn_WString& place = places_[PlaceOf(text)];
        if (place.GetView() != text)
            place = Zn_WString(text);
        return place;
    }
    // Shares what is short enough to come again.
    Zn_WString MakeText(std::u16string_view text) { return text.size() <= kShort ? Of(text) : Zn_WString(text); }

private:
    static constexpr std::size_t kPlaces = 256;
    static constexpr std::size_t kShort = 8;

    static std::size_t PlaceOf(std::u16string_view text) noexcept
    {
        if (text.empty())
            return 0;
        const std::size_t first = text.front();
        const std::size_t middle = text[text.size() / 2];
        const std::size_t last = text.back();
        return (text.size() + 7 * first + 31 * middle + 59 * last) % kPlaces;
    }

    std::array<Zn_WString, kPlaces> places_;
};

} // namespace zn
