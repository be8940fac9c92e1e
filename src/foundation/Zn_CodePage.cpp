#include "Zn_CodePage.h"

#include "foundation/casefold.h"
#include "foundation/encoding.h"

#include <atomic>
#include <string_view>

namespace {

// The names of the code pages. The first of a page is the one that is written; all are read, with
// case and everything but letters and digits ignored.
struct Charset {
    unsigned codePage;
    const char* name;
};

constexpr Charset kCharsets[] = {
    {65001, "utf-8"},
    {65001, "cp65001"},
    {65001, "unicode-1-1-utf-8"},
    {1200, "utf-16"},
    {1200, "utf-16le"},
    {1200, "ucs-2"},
    {1200, "unicode"},
    {1200, "iso-10646-ucs-2"},
    {1200, "cp1200"},
    {1201, "utf-16be"},
    {1201, "unicodefffe"},
    {1201, "cp1201"},
    {1252, "windows-1252"},
    {1252, "cp1252"},
    {1252, "x-cp1252"},
    {1252, "ansi"},
    {949, "euc-kr"},
    {949, "ks_c_5601-1987"},
    {949, "ksc5601"},
    {949, "ks_c_5601-1989"},
    {949, "ksc_5601"},
    {949, "korean"},
    {949, "csksc56011987"},
    {949, "iso-ir-149"},
    {949, "windows-949"},
    {949, "cp949"},
    {949, "uhc"},
    {949, "x-windows-949"},
    {932, "shift_jis"},
    {932, "sjis"},
    {932, "x-sjis"},
    {932, "ms_kanji"},
    {932, "csshiftjis"},
    {932, "windows-31j"},
    {932, "cswindows31j"},
    {932, "ms932"},
    {932, "cp932"},
    {932, "cp943"},
    {932, "pck"},
    {28591, "iso-8859-1"},
    {28591, "latin1"},
    {28591, "l1"},
    {28591, "cp819"},
    {28591, "ibm819"},
    {28591, "iso-ir-100"},
    {28591, "csisolatin1"},
    {20127, "us-ascii"},
    {20127, "ascii"},
    {20127, "ansi_x3.4-1968"},
    {20127, "iso646-us"},
    {936, "gbk"},
    {936, "gb2312"},
    {936, "cp936"},
    {936, "ms936"},
    {936, "euc-cn"},
    {936, "gb_2312-80"},
    {936, "chinese"},
    {936, "x-gbk"},
    {936, "csgb2312"},
    {54936, "gb18030"},
    {950, "big5"},
    {950, "big5-hkscs"},
    {950, "cp950"},
    {950, "x-x-big5"},
    {20932, "euc-jp"},
    {20932, "x-euc-jp"},
    {20932, "ujis"},
    {20932, "cseucpkdfmtjapanese"},
    {51932, "euc-jp"},
    {50220, "iso-2022-jp"},
    {50225, "iso-2022-kr"},
    {1361, "johab"},
    {1250, "windows-1250"},
    {1250, "cp1250"},
    {1251, "windows-1251"},
    {1251, "cp1251"},
    {1253, "windows-1253"},
    {1253, "cp1253"},
    {1254, "windows-1254"},
    {1254, "cp1254"},
    {1255, "windows-1255"},
    {1255, "cp1255"},
    {1256, "windows-1256"},
    {1256, "cp1256"},
    {1257, "windows-1257"},
    {1257, "cp1257"},
    {1258, "windows-1258"},
    {1258, "cp1258"},
    {874, "windows-874"},
    {874, "cp874"},
    {874, "tis-620"},
    {874, "iso-8859-11"},
    {28592, "iso-8859-2"},
    {28592, "latin2"},
    {28593, "iso-8859-3"},
    {28593, "latin3"},
    {28594, "iso-8859-4"},
    {28594, "latin4"},
    {28595, "iso-8859-5"},
    {28595, "cyrillic"},
    {28596, "iso-8859-6"},
    {28596, "arabic"},
    {28597, "iso-8859-7"},
    {28597, "greek"},
    {28598, "iso-8859-8"},
    {28598, "hebrew"},
    {28599, "iso-8859-9"},
    {28599, "latin5"},
    {28603, "iso-8859-13"},
    {28605, "iso-8859-15"},
    {28605, "latin9"},
    {20866, "koi8-r"},
    {20866, "koi8"},
    {21866, "koi8-u"},
    {10000, "macintosh"},
    {10000, "mac"},
    {437, "ibm437"},
    {437, "cp437"},
    {850, "ibm850"},
    {850, "cp850"},
    {852, "ibm852"},
    {852, "cp852"},
    {855, "ibm855"},
    {855, "cp855"},
    {866, "ibm866"},
    {866, "cp866"},
    {65000, "utf-7"},
};

template <class Char>
constexpr bool Counts(Char ch) noexcept
{
    return (ch >= Char('0') && ch <= Char('9')) || (ch >= Char('a') && ch <= Char('z')) ||
           (ch >= Char('A') && ch <= Char('Z')) || ch >= Char(0x7F) || ch < Char(0);
}

template <class Char>
constexpr int NextCounting(std::basic_string_view<Char>& name) noexcept
{
    while (!name.empty() && !Counts(name[0]))
        name.remove_prefix(1);
    if (name.empty())
        return 0;
    const Char ch = name[0];
    name.remove_prefix(1);
    return ch >= Char('A') && ch <= Char('Z') ? ch + 32 : ch;
}

template <class Char>
bool SameName(std::basic_string_view<Char> a, std::string_view b) noexcept
{
    for (;;) {
        const int left = NextCounting(a);
        if (left != NextCounting(b))
            return false;
        if (left == 0)
            return true;
    }
}

template <class Char>
unsigned FindCodePage(std::basic_string_view<Char> name) noexcept
{
    if (SameName(name, ""))
        return 0;
    for (const Charset& charset : kCharsets) {
        if (SameName(name, charset.name))
            return charset.codePage;
    }
    return 0;
}

// The charset of a locale's name stands between "." and "@": ko_KR.eucKR, de_DE.ISO-8859-15@euro.
unsigned CodePageOfEnvironment() noexcept
{
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        std::string_view locale = zn::platform::Environment(variable);
        if (locale.empty())
            continue;
        const std::size_t point = locale.find('.');
        const unsigned found =
            point == std::string_view::npos ? 0 : FindCodePage(locale.substr(point + 1, locale.find('@') - point - 1));
        return found != 0 ? found : zn::kUtf8;
    }
    return zn::kUtf8;
}

std::atomic<unsigned> localeCodePage{0};

} // namespace

unsigned ZnGetLocaleCP() noexcept
{
    static const unsigned environment = CodePageOfEnvironment();
    const unsigned set = localeCodePage.load(std::memory_order_relaxed);
    return set != 0 ? set : environment;
}

void ZnSetLocaleCP(unsigned codePage) noexcept
{
    localeCodePage.store(codePage, std::memory_order_relaxed);
}

unsigned zn_activecodepage(unsigned codePage) noexcept
{
    return codePage != 0 ? codePage : ZnGetLocaleCP();
}

unsigned zn_findcodepageW(const char16_t* name) noexcept
{
    return name ? FindCodePage(std::u16string_view(name)) : 0;
}

unsigned zn_findcodepageA(const char* name) noexcept
{
    return name ? FindCodePage(std::string_view(name)) : 0;
}

const char* zn_findcharset(unsigned codePage) noexcept
{
    codePage = zn_activecodepage(codePage);
    for (const Charset& charset : kCharsets) {
        if (charset.codePage == codePage)
            return charset.name;
    }
    return "";
}
