// A handler that writes down what it is told, one line of text for a whole document.
#pragma once

#include "Zn_SAXIterator.h"

#include <string>

// `<a` start, `>a` end, `/a` empty, `?a` instruction, `!a` declaration, each with [attributes] where there are
// any; `T` text, `W` white space, `D` CDATA, `C` comment, `#` code page, each with its content in brackets.
class EventLog : public Zn_SAXCtxHandler {
public:
    int OnCharSet(unsigned codePage) override
    {
        const Zn_WString number = Zn_WString::FromUtf8(std::to_string(codePage));
        log.append(u"#[").append(number.GetView()).append(u"] ");
        return 1;
    }
    int OnProcInstr(const char16_t* n, int nl, const char16_t* a, int l) override { return Tag(u'?', n, nl, a, l); }
    int OnDeclaration(const char16_t* n, int nl, const char16_t* a, int l) override { return Tag(u'!', n, nl, a, l); }
    int OnEmptyElement(const char16_t* n, int nl, const char16_t* a, int l) override { return Tag(u'/', n, nl, a, l); }
    int OnStartElement(const char16_t* n, int nl, const char16_t* a, int l) override { return Tag(u'<', n, nl, a, l); }
    int OnEndElement(const char16_t* n, int nl) override { return Tag(u'>', n, nl, nullptr, 0); }
    int OnWhiteSpace(const char16_t* text, int length) override { return Content(u'W', text, length); }
    int OnText(const char16_t* text, int length) override { return Content(u'T', text, length); }
    int OnCData(const char16_t* text, int length) override { return Content(u'D', text, length); }
    int OnComment(const char16_t* text, int length) override { return Content(u'C', text, length); }

    std::u16string log;

private:
    int Tag(char16_t mark, const char16_t* name, int nameLength, const char16_t* attributes, int length)
    {
        log += mark;
        log.append(name, static_cast<std::size_t>(nameLength));
        if (attributes || length != 0)
            Brackets(attributes, length);
        log += u' ';
        return 1;
    }
    int Content(char16_t mark, const char16_t* text, int length)
    {
        log += mark;
        Brackets(text, length);
        log += u' ';
        return 1;
    }
    void Brackets(const char16_t* text, int length)
    {
        log += u'[';
        log.append(text, static_cast<std::size_t>(length));
        log += u']';
    }
};
